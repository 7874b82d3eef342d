#pragma once

#include "tests/support/startedservices.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <QStringList>

//! \brief The simulated update service with one release, for the host of an Installation.
class ReleaseServer
{
public:
    //! Offers a package with an editor, a configuration file and a page, delivers it completely and without
    //! delay, and clears the recorded requests.
    void reset();
    void offer(const QByteArray& package, const QString& version = QStringLiteral("1.0.1"));
    //! The offered package.
    const QByteArray& package() const { return m_package; }
    QString md5() const;

    //! Delivers this number of bytes of the package, and no more until deliver() is called.
    void stallAfter(qint64 bytes);
    void deliver();

    //! The arguments for a small host that runs this step with this service.
    QStringList arguments(const QString& step) const;
    //! The Range headers of the requests for the package.
    QByteArrayList ranges() const;
    void clearRequests() { m_services.log().clear(); }

private:
    TestSupport::StartedServices m_services;
    QByteArray m_package;
};
