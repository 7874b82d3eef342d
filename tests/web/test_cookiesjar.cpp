#include "web/cookiesjar.h"

#include "web/webclient.h"
#include "web/webserver.h"

#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QUrl>
#include <QtTest>

class TestCookiesJar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void allCookiesReturnsWhatWasSet();
    void settingReplacesTheWholeContent();
    void sharedJarBelongsToTheSharedManager();
    void webServerHasAManagerOfItsOwn();
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

QTEST_GUILESS_MAIN(TestCookiesJar)
#include "test_cookiesjar.moc"
