#include "fuzz/support.h"
#include "project/projectinfomgr.h"
#include "web/cookiesjar.h"
#include "web/webclient.h"

#include <QHash>
#include <QNetworkCookie>

namespace {

//! Sets cookies with the replies of one host.
void setByAnswers(const QByteArray& headers)
{
    CCookiesJar jar;
    const QUrl url(QStringLiteral("http://editor.example.org/org"));
    const QList<QByteArray> lines = headers.split('\n');
    for (const QByteArray& line : lines)
        jar.setCookiesFromUrl(QNetworkCookie::parseCookies(line), url);

    QHash<QString, int> ofDomain;
    const QList<QNetworkCookie> cookies = jar.allCookies();
    for (const QNetworkCookie& cookie : cookies)
        Fuzz::require(++ofDomain[cookie.domain()] <= 180);
    jar.cookiesForUrl(url);
}

//! Sets the cookies of a session.
void setBySession(const QByteArray& text)
{
    Fuzz::Network network;
    NelvoSDK::LoginSession session;
    session.cookies = QString::fromUtf8(text).toStdWString();
    NelvoPlugin::CProjectInfoMgr manager;
    manager.ReflushProjOrgInfo(session);
    const QList<QNetworkCookie> cookies = sharedCookieJar()->allCookies();
    for (const QNetworkCookie& cookie : cookies)
        cookie.toRawForm(QNetworkCookie::Full);
}

} // namespace

//! The cookies: headers of replies, one on each line, and the text of a session.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray text = Fuzz::bytesOf(data, size);
    setByAnswers(text);
    setBySession(text);
    return 0;
}
