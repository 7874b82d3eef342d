#pragma once

#include <QMutex>
#include <QNetworkCookie>
#include <QNetworkCookieJar>

//! \brief The one cookie jar of all blocking calls.
//!
//! A QNetworkCookieJar whose whole content can be read and replaced: a session takes its cookies along as
//! text and brings them back from there. In memory only. Every operation may be called from any thread:
//! each thread that makes calls has a network manager of its own, and all of them use this jar.
//!
//! Of the cookies that answers set, it keeps 180 of a domain and 3,000 in all; the oldest go first. What
//! setAllCookies brings is neither counted nor dropped, until an answer sets it anew.
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
    //! Drops the cookie that is too much after one of that domain came in.
    void dropOldest(const QString& domain);

    //! Recursive, since the base class builds its operations on one another.
    mutable QRecursiveMutex m_mutex;
    //! How many of the cookies setAllCookies brought. They are in front of all others.
    int m_restored = 0;
};
