#include "web/cookiesjar.h"

#include <QMutexLocker>

CCookiesJar::CCookiesJar(QObject* parent) : QNetworkCookieJar(parent) {}

QList<QNetworkCookie> CCookiesJar::allCookies() const
{
    const QMutexLocker locker(&m_mutex);
    return QNetworkCookieJar::allCookies();
}

void CCookiesJar::setAllCookies(const QList<QNetworkCookie>& cookies)
{
    const QMutexLocker locker(&m_mutex);
    QNetworkCookieJar::setAllCookies(cookies);
}

QList<QNetworkCookie> CCookiesJar::cookiesForUrl(const QUrl& url) const
{
    const QMutexLocker locker(&m_mutex);
    return QNetworkCookieJar::cookiesForUrl(url);
}

bool CCookiesJar::setCookiesFromUrl(const QList<QNetworkCookie>& cookies, const QUrl& url)
{
    const QMutexLocker locker(&m_mutex);
    return QNetworkCookieJar::setCookiesFromUrl(cookies, url);
}

bool CCookiesJar::insertCookie(const QNetworkCookie& cookie)
{
    const QMutexLocker locker(&m_mutex);
    return QNetworkCookieJar::insertCookie(cookie);
}

bool CCookiesJar::updateCookie(const QNetworkCookie& cookie)
{
    const QMutexLocker locker(&m_mutex);
    return QNetworkCookieJar::updateCookie(cookie);
}

bool CCookiesJar::deleteCookie(const QNetworkCookie& cookie)
{
    const QMutexLocker locker(&m_mutex);
    return QNetworkCookieJar::deleteCookie(cookie);
}
