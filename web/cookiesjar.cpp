#include "web/cookiesjar.h"

#include <QMutexLocker>

#include <algorithm>

namespace {

constexpr int MaxOfDomain = 180;
constexpr int MaxOfAnswers = 3000;

//! The domain without the leading dot, which marks a cookie that is also valid for subdomains.
QString withoutDot(const QString& domain)
{
    return domain.startsWith(QLatin1Char('.')) ? domain.mid(1) : domain;
}

bool isAmong(const QList<QNetworkCookie>& cookies, const QNetworkCookie& cookie)
{
    return std::any_of(cookies.begin(), cookies.end(),
                       [&cookie](const QNetworkCookie& other) { return other.hasSameIdentifier(cookie); });
}

} // namespace

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
    m_restored = cookies.size();
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
    if (!QNetworkCookieJar::insertCookie(cookie))
        return false;
    dropOldest(withoutDot(cookie.domain()));
    return true;
}

bool CCookiesJar::updateCookie(const QNetworkCookie& cookie)
{
    const QMutexLocker locker(&m_mutex);
    return QNetworkCookieJar::updateCookie(cookie);
}

bool CCookiesJar::deleteCookie(const QNetworkCookie& cookie)
{
    const QMutexLocker locker(&m_mutex);
    if (isAmong(QNetworkCookieJar::allCookies().mid(0, m_restored), cookie))
        --m_restored;
    return QNetworkCookieJar::deleteCookie(cookie);
}

void CCookiesJar::dropOldest(const QString& domain)
{
    QList<QNetworkCookie> cookies = QNetworkCookieJar::allCookies();
    int oldestOfDomain = 0;
    int ofDomain = 0;
    for (int i = cookies.size() - 1; i >= m_restored; --i) {
        if (withoutDot(cookies.at(i).domain()) == domain) {
            oldestOfDomain = i;
            ++ofDomain;
        }
    }
    if (ofDomain > MaxOfDomain)
        cookies.removeAt(oldestOfDomain);
    else if (cookies.size() - m_restored > MaxOfAnswers)
        cookies.removeAt(m_restored);
    else
        return;
    QNetworkCookieJar::setAllCookies(cookies);
}
