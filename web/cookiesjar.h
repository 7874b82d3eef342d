#pragma once

#include <QMutex>
#include <QNetworkCookie>
#include <QNetworkCookieJar>

//! \brief The cookie jar of all blocking calls.
//!
//! A QNetworkCookieJar whose whole content can be read and replaced: a session stores its cookies as text and
//! restores them from it. In memory only. Every operation may be called on any thread: each thread that sends
//! requests has its own network manager, and all of them use this jar.
//!
//! Of the cookies that replies set, the jar keeps 180 for each domain and 3,000 in all, and drops the oldest
//! first. Cookies of setAllCookies are neither counted nor dropped until a reply sets them again.
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
    //! Drops the oldest cookie if a new cookie of that domain exceeds a limit.
    void dropOldest(const QString& domain);

    //! Recursive, because operations of the base class call each other.
    mutable QRecursiveMutex m_mutex;
    //! The number of cookies from setAllCookies. They precede all others.
    int m_restored = 0;
};
