#include "web/webserver.h"

#include "tests/support/messagelog.h"
#include "tests/support/startedservices.h"
#include "tests/support/systemtexts.h"
#include "tests/support/wine.h"
#include "web/cookiesjar.h"
#include "web/webclient.h"

#include <QAbstractEventDispatcher>
#include <QCursor>
#include <QElapsedTimer>
#include <QJsonObject>
#include <QNetworkCookie>
#include <QNetworkReply>
#include <QTimer>
#include <QUrl>
#include <QWindow>
#include <QtTest>

#include <algorithm>
#include <functional>

Q_DECLARE_METATYPE(NelvoDevkit::Fault)

using NelvoDevkit::Fault;
using NelvoDevkit::HttpReply;
using NelvoDevkit::LoggedRequest;
using TestSupport::json;
using TestSupport::MessageLog;

namespace {

constexpr int Ample = 60000; // no test waits that long
const QString FindLatest = QStringLiteral("/v1.0/service/sys/productVersion/findLatest");

const QByteArray Release = R"({"code":200,"data":{"pVersion":"1.0.1"},"message":"ok"})";

QJsonObject message(const QString& text)
{
    return {{QStringLiteral("message"), text}};
}

//! A window that calls a function when the mouse moves over it.
class Page : public QWindow
{
public:
    std::function<void()> whenMouseMoves;

protected:
    void mouseMoveEvent(QMouseEvent* /*event*/) override
    {
        if (whenMouseMoves)
            whenMouseMoves();
    }
};

} // namespace

class TestWebServer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void hasNoSignalsSlotsOrProperties();
    void serverAddressIsStoredAsItIs();

    void asksForTheLatestRelease();
    void sendsItsOneHeaderAndTheNetworksOwn();
    void sharesNoCookies();
    void bodyIsSentAsJson();
    void argumentsAreFilledInAsTheyAre_data();
    void argumentsAreFilledInAsTheyAre();
    void addressIsPlainConcatenation();

    void answerIsHandedOut();
    void codeAndDataDecide_data();
    void codeAndDataDecide();
    void bodyThatIsNoObjectIsAnUnknownFailure_data();
    void bodyThatIsNoObjectIsAnUnknownFailure();
    void networkFailureIsTold_data();
    void networkFailureIsTold();
    void redirectIsNotFollowed();
    void refusedSchemeIsAFailure();

    void timeIsUp();
    void finishingInTheLastPassIsTooLate();
    void lateReplyIsEndedByItsDeletion();
    void replyIsReleased();
    void filledReplyGetsNoMessage();
    void eventsRunDuringACall();
    void inputIsDeliveredDuringACall();
    void theWaitNeverSleeps();
    void aCallInsideACallEndsFirst();
    void nothingIsLogged();

private:
    bool findLatest(QJsonObject& reply, int timeoutMs = Ample);
    void answerWith(const HttpReply& reply) { m_services.setReply("POST", FindLatest, reply); }
    int repliesAlive() const { return m_server->manager->findChildren<QNetworkReply*>().size(); }

    TestSupport::StartedServices m_services;
    QString m_url;
    std::unique_ptr<CWebServer> m_server;
};

void TestWebServer::initTestCase()
{
    m_url = m_services.editorUrl();
}

void TestWebServer::init()
{
    m_services.reset();
    answerWith(json(Release));
    m_server = std::make_unique<CWebServer>();
    m_server->setServerAddress(m_url);
}

bool TestWebServer::findLatest(QJsonObject& reply, int timeoutMs)
{
    return m_server->findLatest(QStringLiteral("token"), QStringLiteral("product"), QStringLiteral("0.0.0"),
                                {}, reply, timeoutMs);
}

void TestWebServer::hasNoSignalsSlotsOrProperties()
{
    QCOMPARE(CWebServer::staticMetaObject.className(), "CWebServer");
    QCOMPARE(CWebServer::staticMetaObject.methodCount(), QObject::staticMetaObject.methodCount());
    QCOMPARE(CWebServer::staticMetaObject.propertyCount(), QObject::staticMetaObject.propertyCount());
}

void TestWebServer::serverAddressIsStoredAsItIs()
{
    CWebServer server;
    QVERIFY(server.serverAddress.isEmpty());
    server.setServerAddress(QStringLiteral("http://a/%1/"));
    QCOMPARE(server.serverAddress, QStringLiteral("http://a/%1/"));
    server.setServerAddress(QStringLiteral("b"));
    QCOMPARE(server.serverAddress, QStringLiteral("b"));
}

void TestWebServer::asksForTheLatestRelease()
{
    QJsonObject reply;
    QVERIFY(findLatest(reply));
    const LoggedRequest request = m_services.onlyRequest();
    QCOMPARE(request.method, QByteArray("POST"));
    QCOMPARE(request.target, QByteArray("/v1.0/service/sys/productVersion/findLatest"
                                        "?access_token=token&productId=product&productVersion=0.0.0"));
    QCOMPARE(request.body, QByteArray("{\n}\n"));
}

void TestWebServer::sendsItsOneHeaderAndTheNetworksOwn()
{
    QJsonObject reply;
    QVERIFY(findLatest(reply));
    QByteArrayList lines;
    for (const NelvoDevkit::HttpHeader& header : m_services.onlyRequest().headers)
        lines.append(header.name + ": " + header.value);
    QCOMPARE(lines, (QByteArrayList{
                        "Host: " + QUrl(m_url).authority().toLatin1(), "Content-type: application/json",
                        "Content-Length: 4", "Connection: Keep-Alive", "Accept-Encoding: gzip, deflate",
                        "Accept-Language: " + TestSupport::acceptLanguage(), "User-Agent: Mozilla/5.0"}));
}

void TestWebServer::sharesNoCookies()
{
    QNetworkCookie cookie("shared", "1");
    cookie.setDomain(QStringLiteral("127.0.0.1"));
    cookie.setPath(QStringLiteral("/"));
    sharedCookieJar()->setAllCookies({cookie});
    answerWith({200, "application/json", Release, {{"Set-Cookie", "update=1; Path=/"}}});
    QJsonObject reply;
    QVERIFY(findLatest(reply));
    QVERIFY(m_services.onlyRequest().header("Cookie").isNull());
    QCOMPARE(sharedCookieJar()->allCookies(), QList<QNetworkCookie>{cookie});
}

void TestWebServer::bodyIsSentAsJson()
{
    QJsonObject reply;
    QVERIFY(m_server->postJson({{QStringLiteral("name"), QStringLiteral("\u5317\u4eac")}}, reply,
                               QUrl(m_url + FindLatest), Ample));
    QCOMPARE(m_services.onlyRequest().body, QByteArray("{\n    \"name\": \"\xE5\x8C\x97\xE4\xBA\xAC\"\n}\n"));
    QCOMPARE(m_services.onlyRequest().target, FindLatest.toLatin1());
}

void TestWebServer::argumentsAreFilledInAsTheyAre_data()
{
    QTest::addColumn<QString>("token");
    QTest::addColumn<QString>("productId");
    QTest::addColumn<QString>("version");
    QTest::addColumn<QByteArray>("query");

    const auto row = [](const char* name, const char* token, const char* product, const char* version,
                        const QByteArray& query) {
        QTest::newRow(name) << QString::fromUtf8(token) << QString::fromUtf8(product)
                            << QString::fromUtf8(version) << query;
    };
    row("plain", "t", "p", "0.0.0", "access_token=t&productId=p&productVersion=0.0.0");
    row("empty", "", "", "", "access_token=&productId=&productVersion=");
    row("with separators", "a&b=c", "d+e", "1", "access_token=a&b=c&productId=d+e&productVersion=1");
    row("already encoded", "a%20b", "p", "1", "access_token=a%20b&productId=p&productVersion=1");
    row("blank", "a b", "p", "1", "access_token=a%20b&productId=p&productVersion=1");
    row("chinese", "\xE5\x8C\x97", "p", "1", "access_token=%E5%8C%97&productId=p&productVersion=1");
    row("like a placeholder", "%2x", "%3x", "v", "access_token=%252x&productId=%253x&productVersion=v");
}

void TestWebServer::argumentsAreFilledInAsTheyAre()
{
    QFETCH(QString, token);
    QFETCH(QString, productId);
    QFETCH(QString, version);
    QFETCH(QByteArray, query);
    QJsonObject reply;
    QVERIFY(m_server->findLatest(token, productId, version, {}, reply, Ample));
    QCOMPARE(m_services.onlyRequest().target, FindLatest.toLatin1() + '?' + query);
}

void TestWebServer::addressIsPlainConcatenation()
{
    m_services.setReply("POST", QStringLiteral("/proxy") + FindLatest, json(Release));
    m_server->setServerAddress(m_url + QStringLiteral("/proxy"));
    QJsonObject reply;
    QVERIFY(findLatest(reply));
    QVERIFY(m_services.onlyRequest().target.startsWith("/proxy/v1.0/service/"));
}

void TestWebServer::answerIsHandedOut()
{
    QJsonObject reply;
    QVERIFY(findLatest(reply));
    QCOMPARE(reply, QJsonDocument::fromJson(Release).object());
}

void TestWebServer::codeAndDataDecide_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<bool>("success");

    QTest::newRow("200") << QByteArray(R"({"code":200,"data":{}})") << true;
    QTest::newRow("200 in another spelling") << QByteArray(R"({"code":2e2,"data":{}})") << true;
    QTest::newRow("data null") << QByteArray(R"({"code":200,"data":null})") << true;
    QTest::newRow("data a text") << QByteArray(R"({"code":200,"data":"x"})") << true;
    QTest::newRow("a text for the code") << QByteArray(R"({"code":"200","data":{}})") << false;
    QTest::newRow("a fraction") << QByteArray(R"({"code":200.5,"data":{}})") << false;
    QTest::newRow("another code") << QByteArray(R"({"code":201,"data":{}})") << false;
    QTest::newRow("code 0") << QByteArray(R"({"code":0,"data":{}})") << false;
    QTest::newRow("no data") << QByteArray(R"({"code":200})") << false;
    QTest::newRow("no code") << QByteArray(R"({"data":{}})") << false;
    QTest::newRow("neither") << QByteArray(R"({"other":1})") << false;
}

void TestWebServer::codeAndDataDecide()
{
    QFETCH(QByteArray, body);
    QFETCH(bool, success);
    answerWith(json(body));
    QJsonObject reply;
    QCOMPARE(findLatest(reply), success);
    QCOMPARE(reply, QJsonDocument::fromJson(body).object()); // the client adds no message
}

void TestWebServer::bodyThatIsNoObjectIsAnUnknownFailure_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("empty body") << QByteArray();
    QTest::newRow("no JSON") << QByteArray("<html/>");
    QTest::newRow("cut JSON") << Release.chopped(1);
    QTest::newRow("array") << QByteArray("[200]");
    QTest::newRow("empty object") << QByteArray("{}");
}

void TestWebServer::bodyThatIsNoObjectIsAnUnknownFailure()
{
    QFETCH(QByteArray, body);
    answerWith(json(body));
    QJsonObject reply;
    QVERIFY(!findLatest(reply));
    QCOMPARE(reply, message(QStringLiteral("unknown fatal")));
}

void TestWebServer::networkFailureIsTold_data()
{
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("text");

    const QString replied =
        QStringLiteral("Error transferring %1%2?access_token=token&productId=product&productVersion=0.0.0"
                       " - server replied: ")
            .arg(m_url, FindLatest);
    QTest::newRow("refuse") << Fault::Refuse << 0 << QStringLiteral("Connection refused");
    QTest::newRow("reset") << Fault::Reset << 0 << QStringLiteral("Connection closed");
    QTest::newRow("401") << Fault::Status << 401 << QStringLiteral("Host requires authentication");
    QTest::newRow("404") << Fault::Status << 404 << replied + QStringLiteral("Not Found");
    QTest::newRow("500") << Fault::Status << 500 << replied + QStringLiteral("Internal Server Error");
}

void TestWebServer::networkFailureIsTold()
{
    QFETCH(Fault, fault);
    QFETCH(int, value);
    QFETCH(QString, text);
    if (fault == Fault::Reset && TestSupport::isUnderWine())
        QSKIP(TestSupport::ResetsGoUnnoticed);
    m_services.addFault({fault, FindLatest, {}, value, false});
    QJsonObject reply;
    QVERIFY(!findLatest(reply));
    QCOMPARE(reply, message(text));

    // The body of a failure is ignored.
    if (fault == Fault::Status) {
        m_services.clearFaults();
        answerWith(json(Release, value));
        QJsonObject other;
        QVERIFY(!findLatest(other));
        QCOMPARE(other, message(text));
    }
}

void TestWebServer::redirectIsNotFollowed()
{
    const auto elsewhere = QStringLiteral("/elsewhere");
    m_services.setReply("POST", elsewhere, json(Release));
    m_services.setReply("GET", elsewhere, json(Release));
    answerWith({302, "text/plain", {}, {{"Location", elsewhere.toLatin1()}}});
    QJsonObject reply;
    QVERIFY(!findLatest(reply));
    QCOMPARE(reply, message(QStringLiteral("unknown fatal")));
    const QVector<LoggedRequest> requests = m_services.log().requests();
    for (const LoggedRequest& request : requests)
        QCOMPARE(request.path(), FindLatest.toLatin1());
}

void TestWebServer::refusedSchemeIsAFailure()
{
    QJsonObject reply;
    QVERIFY(!m_server->postJson({}, reply, QUrl(QStringLiteral("nowhere://host")), Ample));
    QCOMPARE(reply, message(QStringLiteral("Protocol \"nowhere\" is unknown")));
    CWebServer withoutAddress;
    QJsonObject other;
    QVERIFY(!withoutAddress.findLatest({}, {}, {}, {}, other, Ample));
    QCOMPARE(other, message(QStringLiteral("Protocol \"\" is unknown")));
}

void TestWebServer::timeIsUp()
{
    m_services.addFault({Fault::Stall, FindLatest, {}, 0, false});
    QJsonObject reply;
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!findLatest(reply, 100));
    QVERIFY(timer.elapsed() >= 100);
    QCOMPARE(reply, message(QStringLiteral("request timeout")));
}

//! An unknown scheme fails in the first pass of the event loop. A timeout of 0 expires in the same pass.
void TestWebServer::finishingInTheLastPassIsTooLate()
{
    int finished = 0;
    connect(&m_server->manager.emplace(), &QNetworkAccessManager::finished, this,
            [&finished] { ++finished; });
    QJsonObject reply;
    QVERIFY(!m_server->postJson({}, reply, QUrl(QStringLiteral("nowhere://host")), 0));
    QCOMPARE(finished, 1);
    QCOMPARE(reply, message(QStringLiteral("request timeout")));
}

void TestWebServer::lateReplyIsEndedByItsDeletion()
{
    m_services.addFault({Fault::Stall, FindLatest, {}, 0, false});
    int finished = 0;
    connect(&m_server->manager.emplace(), &QNetworkAccessManager::finished, this,
            [&finished] { ++finished; });
    QJsonObject reply;
    QVERIFY(!findLatest(reply, 0));
    QCOMPARE(repliesAlive(), 1);
    QVERIFY(m_server->manager->findChild<QNetworkReply*>()->isRunning()); // not aborted
    QTRY_COMPARE(repliesAlive(), 0);
    QCOMPARE(finished, 0);
}

void TestWebServer::replyIsReleased()
{
    QJsonObject reply;
    QVERIFY(findLatest(reply));
    QTRY_COMPARE(repliesAlive(), 0);
}

void TestWebServer::filledReplyGetsNoMessage()
{
    m_services.addFault({Fault::Status, FindLatest, {}, 500, false});
    const QJsonObject before{{QStringLiteral("old"), 1}};
    QJsonObject reply = before;
    QVERIFY(!findLatest(reply));
    QCOMPARE(reply, before);
}

void TestWebServer::eventsRunDuringACall()
{
    m_services.addFault({Fault::Stall, FindLatest, {}, 0, false});
    int ticks = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [this, &ticks] {
        if (++ticks == 3)
            m_services.clearFaults();
    });
    timer.start(1);
    QJsonObject reply;
    QVERIFY(findLatest(reply));
    QVERIFY(ticks >= 3);
}

void TestWebServer::inputIsDeliveredDuringACall()
{
    Page page;
    page.setGeometry(100, 100, 200, 200);
    QCursor::setPos(10, 10);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    QTRY_COMPARE(QCursor::pos(), QPoint(10, 10));
    m_services.addFault({Fault::Stall, FindLatest, {}, 0, false});
    page.whenMouseMoves = [this] { m_services.clearFaults(); };
    QCursor::setPos(page.geometry().center());
    QJsonObject reply;
    QVERIFY(findLatest(reply, 20000));
}

//! A wait that sleeps passes the event loop at most once per millisecond. The fastest of several waits
//! counts, because the machine may be busy.
void TestWebServer::theWaitNeverSleeps()
{
    m_services.addFault({Fault::Stall, FindLatest, {}, 0, false});
    const auto passesInAMillisecond = [this] {
        qint64 passes = 0;
        const auto counter = connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake,
                                     this, [&passes] { ++passes; });
        QElapsedTimer timer;
        timer.start();
        QJsonObject reply;
        findLatest(reply, 50);
        disconnect(counter);
        return passes / timer.elapsed();
    };
    qint64 most = 0;
    for (int i = 0; i < 40 && most < 3; ++i)
        most = std::max(most, passesInAMillisecond());
    QVERIFY2(most >= 3, qPrintable(QString::number(most)));
}

void TestWebServer::aCallInsideACallEndsFirst()
{
    const auto inner = QStringLiteral("/inner");
    m_services.setReply("POST", inner, json(Release));
    m_services.addFault({Fault::Stall, FindLatest, {}, 0, false});
    QStringList ended;
    QTimer::singleShot(0, this, [&] {
        QJsonObject reply;
        QVERIFY(m_server->postJson({}, reply, QUrl(m_url + inner), Ample));
        ended.append(QStringLiteral("inner"));
        m_services.clearFaults();
    });
    QJsonObject reply;
    QVERIFY(findLatest(reply));
    ended.append(QStringLiteral("outer"));
    QCOMPARE(ended, (QStringList{QStringLiteral("inner"), QStringLiteral("outer")}));
}

void TestWebServer::nothingIsLogged()
{
    MessageLog log;
    QJsonObject reply;
    QVERIFY(findLatest(reply));
    for (const Fault fault : {Fault::Reset, Fault::NotJson}) {
        m_services.addFault({fault, FindLatest, {}, 0, false});
        reply = {};
        QVERIFY(!findLatest(reply));
        m_services.clearFaults();
    }
    QVERIFY(log.entries().isEmpty());
}

QTEST_MAIN(TestWebServer)
#include "test_webserver.moc"
