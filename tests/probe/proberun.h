#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

//! \brief One run of nelvo-probe, from its start to its end.
class ProbeRun
{
public:
    enum Status { Well, Wrong, WrongUsage };

    //! Sets `password` in its environment unless null, and writes lina's password to its standard input.
    ProbeRun(const QStringList& arguments, const QString& password);
    //! A run with the account's password, the built plug-in and JSON output.
    static ProbeRun withJson(const QString& url, const QString& user, const QStringList& further);
    ProbeRun() = default;

    QJsonObject json() const;
    //! The step with this name in the JSON output; empty if it is missing.
    QJsonObject step(const QString& key) const;
    QString verdict(const QString& key) const;
    QString words(const QString& key) const;

    int status = -1;
    QByteArray output;
    QByteArray error;
};
