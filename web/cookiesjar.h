#pragma once

#include <QMutex>
#include <QNetworkCookie>
#include <QNetworkCookieJar>

//! \brief The one cookie jar of all blocking calls.
//!
//! A QNetworkCookieJar whose whole content can be read and replaced: a session takes its cookies along as
//! text and brings them back from there. In memory only. Every operation may be called from any thread:
//! each thread that makes calls has a network manager of its own, and all of them use this jar.
class CCookiesJar final : public QNetworkCookieJar
{
    Q_OBJECT

public:
    explicit CCookiesJar(QObject* parent = nullptr);

    QList<QNetworkCookie> allCookies() const;
    void setAllCookies(const QList<QNetworkCookie>& cookies);

    QList<QNetworkCookie> cookiesForUrl(const QUrl& url) const override;
    bool setCookiesFromUrl(const QList<QNetworkCookie>& cookies, const QUrl& url) override;
    bool insertCookie(const QNetworkCookie& cookie) override;
    bool updateCookie(const QNetworkCookie& cookie) override;
    bool deleteCookie(const QNetworkCookie& cookie) override;

private:
    //! Recursive, since the base class builds its operations on one another.
    mutable QRecursiveMutex m_mutex;
};
