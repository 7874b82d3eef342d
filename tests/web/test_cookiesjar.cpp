#include "web/cookiesjar.h"

#include "web/webclient.h"
#include "web/webserver.h"

#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QUrl>
#include <QtTest>

#include <thread>
#include <vector>

class TestCookiesJar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void allCookiesReturnsWhatWasSet();
    void settingReplacesTheWholeContent();
    void answersBelowTheBoundsAreKeptAsTheyCome();
    void oldestOfADomainGo();
    void cookieThatIsSetAgainIsTheYoungest();
    void hostAndItsDomainAreOne();
    void oldestOfAllGo();
    void restoredCookiesStay();
    void restoredCookieThatAnAnswerSetsIsTheAnswers();
    void sharedJarBelongsToTheSharedManager();
    void sharedManagerGetsItsJarBack();
    void webServerHasAManagerOfItsOwn();
    void jarMayBeUsedFromManyThreads();
};

namespace {

QNetworkCookie cookie(const QByteArray& name)
{
    QNetworkCookie made(name, "value");
    made.setDomain(QStringLiteral("127.0.0.1"));
    made.setPath(QStringLiteral("/"));
    return made;
}

//! Qt's cookie jar, with public access to its cookies.
class PlainJar final : public QNetworkCookieJar
{
public:
    using QNetworkCookieJar::allCookies;
};

QList<QNetworkCookie> numbered(int first, int last)
{
    QList<QNetworkCookie> cookies;
    for (int i = first; i <= last; ++i)
        cookies.append(cookie("c" + QByteArray::number(i)));
    return cookies;
}

const auto Host = QStringLiteral("127.0.0.1");

//! Sets cookies like a reply of that host.
void answer(QNetworkCookieJar& jar, const QList<QNetworkCookie>& cookies, const QString& host = Host)
{
    QList<QNetworkCookie> ofHost;
    for (const QNetworkCookie& cookie : cookies)
        ofHost.append(QNetworkCookie(cookie.name(), cookie.value()));
    jar.setCookiesFromUrl(ofHost, QUrl(QStringLiteral("http://%1/").arg(host)));
}

} // namespace

void TestCookiesJar::allCookiesReturnsWhatWasSet()
{
    CCookiesJar jar;
    QVERIFY(jar.allCookies().isEmpty());
    jar.setAllCookies({cookie("a"), cookie("b")});
    QCOMPARE(jar.allCookies(), (QList<QNetworkCookie>{cookie("a"), cookie("b")}));
}

void TestCookiesJar::settingReplacesTheWholeContent()
{
    CCookiesJar jar;
    jar.setAllCookies({cookie("a"), cookie("b")});
    jar.setAllCookies({cookie("c")});
    QCOMPARE(jar.allCookies(), QList<QNetworkCookie>{cookie("c")});
    jar.setAllCookies({});
    QVERIFY(jar.allCookies().isEmpty());
}

void TestCookiesJar::answersBelowTheBoundsAreKeptAsTheyCome()
{
    CCookiesJar jar;
    PlainJar plain;
    QNetworkCookie expired = cookie("c7");
    expired.setExpirationDate(QDateTime::currentDateTimeUtc().addDays(-1));
    for (QNetworkCookieJar* each :
         {static_cast<QNetworkCookieJar*>(&jar), static_cast<QNetworkCookieJar*>(&plain)}) {
        answer(*each, numbered(1, 180));
        answer(*each, numbered(40, 60));
        each->setCookiesFromUrl({expired}, QUrl(QStringLiteral("http://127.0.0.1/")));
        each->deleteCookie(cookie("c9"));
        each->updateCookie(cookie("c11"));
        each->updateCookie(cookie("none"));
        for (int i = 0; i < 15; ++i)
            answer(*each, numbered(1, 180), QStringLiteral("host%1.example.org").arg(i));
    }
    QCOMPARE(jar.allCookies(), plain.allCookies());
    QCOMPARE(jar.allCookies().size(), 178 + 15 * 180);
}

void TestCookiesJar::oldestOfADomainGo()
{
    CCookiesJar jar;
    answer(jar, numbered(1, 100), QStringLiteral("other.example.org"));
    const QList<QNetworkCookie> others = jar.allCookies();
    answer(jar, numbered(1, 5000));
    QCOMPARE(jar.allCookies(), others + numbered(4821, 5000));
}

void TestCookiesJar::cookieThatIsSetAgainIsTheYoungest()
{
    CCookiesJar jar;
    answer(jar, numbered(1, 180));
    answer(jar, numbered(1, 1));
    answer(jar, numbered(181, 182));
    QCOMPARE(jar.allCookies(), numbered(4, 180) + numbered(1, 1) + numbered(181, 182));
}

void TestCookiesJar::hostAndItsDomainAreOne()
{
    CCookiesJar jar;
    const QUrl url(QStringLiteral("http://example.org/"));
    QNetworkCookie ofDomain("domain", "value");
    ofDomain.setDomain(QStringLiteral(".example.org"));
    jar.setCookiesFromUrl({ofDomain}, url);
    answer(jar, numbered(1, 179), url.host());
    QCOMPARE(jar.allCookies().size(), 180);
    QCOMPARE(jar.allCookies().constFirst().name(), QByteArray("domain"));
    answer(jar, numbered(180, 180), url.host());
    QCOMPARE(jar.allCookies().size(), 180);
    QCOMPARE(jar.allCookies().constFirst().name(), QByteArray("c1"));
}

void TestCookiesJar::oldestOfAllGo()
{
    CCookiesJar jar;
    PlainJar plain;
    for (int i = 0; i < 20; ++i) {
        for (QNetworkCookieJar* each :
             {static_cast<QNetworkCookieJar*>(&jar), static_cast<QNetworkCookieJar*>(&plain)})
            answer(*each, numbered(1, 175), QStringLiteral("host%1.example.org").arg(i));
    }
    QCOMPARE(jar.allCookies(), plain.allCookies().mid(500));
    QCOMPARE(jar.allCookies().size(), 3000);
}

void TestCookiesJar::restoredCookiesStay()
{
    CCookiesJar jar;
    // A session's cookie text can contain duplicates.
    const QList<QNetworkCookie> restored = numbered(1, 4000) + numbered(1, 10);
    jar.setAllCookies(restored);
    answer(jar, numbered(5001, 5300));
    QCOMPARE(jar.allCookies(), restored + numbered(5121, 5300));

    jar.setAllCookies(numbered(1, 200));
    QCOMPARE(jar.allCookies(), numbered(1, 200));
    answer(jar, numbered(5001, 5300));
    QCOMPARE(jar.allCookies(), numbered(1, 200) + numbered(5121, 5300));
}

void TestCookiesJar::restoredCookieThatAnAnswerSetsIsTheAnswers()
{
    CCookiesJar jar;
    jar.setAllCookies(numbered(1, 200));
    answer(jar, numbered(1, 2));
    QCOMPARE(jar.allCookies(), numbered(3, 200) + numbered(1, 2));
    answer(jar, numbered(301, 480));
    QCOMPARE(jar.allCookies(), numbered(3, 200) + numbered(301, 480));
    jar.deleteCookie(cookie("c3"));
    answer(jar, numbered(481, 481));
    QCOMPARE(jar.allCookies(), numbered(4, 200) + numbered(302, 481));
}

void TestCookiesJar::sharedJarBelongsToTheSharedManager()
{
    QNetworkAccessManager* manager = sharedNetworkManager();
    QCOMPARE(sharedNetworkManager(), manager);
    QCOMPARE(manager->cookieJar(), sharedCookieJar());
    QCOMPARE(sharedCookieJar()->parent(), manager);
    QVERIFY(!manager->parent());
}

//! A host can find the manager and replace its jar.
void TestCookiesJar::sharedManagerGetsItsJarBack()
{
    QNetworkAccessManager* manager = sharedNetworkManager();
    // A manager deletes its jar when it gets another one.
    sharedCookieJar()->setParent(nullptr);
    manager->setCookieJar(new QNetworkCookieJar);
    QCOMPARE(sharedNetworkManager(), manager);
    QCOMPARE(manager->cookieJar(), sharedCookieJar());
    QCOMPARE(sharedCookieJar()->parent(), manager);
}

void TestCookiesJar::webServerHasAManagerOfItsOwn()
{
    CWebServer server;
    QVERIFY(server.serverAddress.isEmpty());
    QJsonObject reply;
    server.postJson({}, reply, QUrl(QStringLiteral("http://127.0.0.1:9")), 10000);
    QVERIFY(server.manager);
    QVERIFY(&*server.manager != sharedNetworkManager());
    QVERIFY(server.manager->cookieJar() != sharedCookieJar());
    QVERIFY(!server.manager->parent());
}

void TestCookiesJar::jarMayBeUsedFromManyThreads()
{
    constexpr int rounds = 2000;
    CCookiesJar jar;
    const QUrl url(QStringLiteral("http://127.0.0.1/"));
    jar.setAllCookies({cookie("both")});
    const auto set = [&](const QByteArray& name) {
        for (int i = 0; i < rounds; ++i) {
            jar.setCookiesFromUrl({cookie(name + QByteArray::number(i % 10)), cookie("both")}, url);
            jar.deleteCookie(cookie(name + QByteArray::number((i + 5) % 10)));
        }
    };
    const auto read = [&] {
        for (int i = 0; i < rounds; ++i) {
            const QList<QNetworkCookie> all = jar.allCookies();
            const QList<QNetworkCookie> some = jar.cookiesForUrl(url);
            QVERIFY(all.contains(cookie("both")));
            QVERIFY(some.contains(cookie("both")));
        }
    };
    const auto replace = [&] {
        for (int i = 0; i < rounds; ++i)
            jar.setAllCookies({cookie("both")});
    };
    std::vector<std::thread> threads;
    threads.emplace_back(set, "a");
    threads.emplace_back(set, "b");
    threads.emplace_back(read);
    threads.emplace_back(replace);
    for (std::thread& thread : threads)
        thread.join();
}

QTEST_GUILESS_MAIN(TestCookiesJar)
#include "test_cookiesjar.moc"
