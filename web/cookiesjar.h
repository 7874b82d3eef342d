#pragma once

#include <QNetworkCookie>
#include <QNetworkCookieJar>

//! \brief The cookie jar of the shared network manager.
//!
//! Nothing but a QNetworkCookieJar whose whole content can be read and replaced: a session takes its
//! cookies along as text and brings them back from there. In memory only; no lock.
class CCookiesJar final : public QNetworkCookieJar
{
    Q_OBJECT

public:
    explicit CCookiesJar(QObject* parent = nullptr);

    using QNetworkCookieJar::allCookies;
    using QNetworkCookieJar::setAllCookies;
};
