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

    //! With `password` in its environment unless it is null, and with lina's password on its standard input.
    ProbeRun(const QStringList& arguments, const QString& password);
    //! With JSON as its output.
    static ProbeRun withJson(const QString& url, const QString& user, const QStringList& further);
    ProbeRun() = default;

    QJsonObject json() const;
    //! A step of the JSON; empty if there is none with that name.
    QJsonObject step(const QString& key) const;
    QString verdict(const QString& key) const;
    QString words(const QString& key) const;

    int status = -1;
    QByteArray output;
    QByteArray error;
};
