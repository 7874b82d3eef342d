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
    void sharedJarBelongsToTheSharedManager();
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

void TestCookiesJar::sharedJarBelongsToTheSharedManager()
{
    QNetworkAccessManager* manager = sharedNetworkManager();
    QCOMPARE(sharedNetworkManager(), manager);
    QCOMPARE(manager->cookieJar(), sharedCookieJar());
    QCOMPARE(sharedCookieJar()->parent(), manager);
    QVERIFY(!manager->parent());
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
    constexpr int Rounds = 2000;
    CCookiesJar jar;
    const QUrl url(QStringLiteral("http://127.0.0.1/"));
    jar.setAllCookies({cookie("both")});
    const auto set = [&](const QByteArray& name) {
        for (int i = 0; i < Rounds; ++i) {
            jar.setCookiesFromUrl({cookie(name + QByteArray::number(i % 10)), cookie("both")}, url);
            jar.deleteCookie(cookie(name + QByteArray::number((i + 5) % 10)));
        }
    };
    const auto read = [&] {
        for (int i = 0; i < Rounds; ++i) {
            const QList<QNetworkCookie> all = jar.allCookies();
            const QList<QNetworkCookie> some = jar.cookiesForUrl(url);
            QVERIFY(all.contains(cookie("both")));
            QVERIFY(some.contains(cookie("both")));
        }
    };
    const auto replace = [&] {
        for (int i = 0; i < Rounds; ++i)
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
