#pragma once

#include "tests/support/startedservices.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <QStringList>

//! \brief The simulated update service with one release of one package, for an Installation to come to.
class ReleaseServer
{
public:
    //! Offers a package with a new editor, a configuration of its own and a page, whole and at once, and
    //! forgets the requests so far.
    void reset();
    void offer(const QByteArray& package, const QString& version = QStringLiteral("1.0.1"));
    //! What is offered.
    const QByteArray& package() const { return m_package; }
    QString md5() const;

    //! Sends so many bytes of the package, and no more until it delivers again.
    void stallAfter(qint64 bytes);
    void deliver();

    //! The arguments with which a host in small takes that step here.
    QStringList arguments(const QString& step) const;
    //! The ranges of the package that were asked for.
    QByteArrayList ranges() const;
    void clearRequests() { m_services.log().clear(); }

private:
    TestSupport::StartedServices m_services;
    QByteArray m_package;
};
