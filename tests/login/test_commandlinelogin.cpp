#include "login/loginactor.h"

#include "tests/support/accounts.h"
#include "tests/support/applicationfile.h"
#include "tests/support/files.h"
#include "tests/support/messagelog.h"
#include "tests/support/recorders.h"
#include "tests/support/row.h"
#include "tests/support/startedservices.h"
#include "web/cookiesjar.h"
#include "web/webclient.h"

#include <QGuiApplication>
#include <QJsonDocument>
#include <QQmlContext>
#include <QQuickView>
#include <QTimer>
#include <QtTest>

using NelvoPlugin::CLoginActor;
using TestSupport::ApplicationFile;
using TestSupport::json;
using TestSupport::md5;
using TestSupport::MessageLog;
using TestSupport::passwordOf;
using TestSupport::row;

namespace {

const auto ListPath = QStringLiteral("/rs/casLogin/listCompany");
constexpr int PatienceMs = 60000;
//! The tests end the event loop with this status if the library has not ended it.
constexpr int StillRunning = 17;
const auto LoginFailedPrefix = QStringLiteral("login failed: ");

} // namespace

//! The sign-in from the command line, which shows no window.
class TestCommandLineLogin : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void entersTheEnterprise();
    void sendsTheSevenRequests();
    void sendsThePasswordAsItIs();
    void showsNoWindowAndWritesNoCache();
    void unknownEnterpriseGoesAheadWithoutAName();
    void idsAreComparedAsNumbers_data();
    void idsAreComparedAsNumbers();
    void firstEnterpriseOfTheIdCounts();

    void failureIsLoggedAndGoesThroughAllTheSame_data();
    void failureIsLoggedAndGoesThroughAllTheSame();
    void failureAsksTheApplicationToQuit();
    void successDoesNotAskTheApplicationToQuit();
    void failureEntersFromTheEarlierList();

private:
    void signIn(const QString& user, const QString& pwd, const QString& epId);
    //! Signs in from the event loop and checks that the failed sign-in ends the loop. The end of the loop
    //! also logs out.
    void failToSignIn(const QString& user, const QString& pwd, const QString& cimUrl, const QString& epId);
    NelvoSDK::LoginSession session() const;
    QString name() const { return QString::fromStdWString(session().epName); }

    TestSupport::StartedServices m_services;
    std::unique_ptr<QQuickView> m_view;
    std::unique_ptr<CLoginActor> m_actor;
    std::unique_ptr<TestSupport::LoginRecorder> m_observer;
    std::unique_ptr<ApplicationFile> m_defaultServer;
    std::unique_ptr<ApplicationFile> m_cache;
};

void TestCommandLineLogin::initTestCase()
{
    m_defaultServer = std::make_unique<ApplicationFile>(QStringLiteral("defaultServerAddress.json"));
    m_defaultServer->write(R"({"defaultServer": "http://default"})");
    m_cache = std::make_unique<ApplicationFile>(QStringLiteral("loginchache.json"));
}

void TestCommandLineLogin::init()
{
    m_services.reset();
    m_services.forgetSessions();
    sharedCookieJar()->setAllCookies({});
    m_actor.reset();
    m_view = std::make_unique<QQuickView>();
    m_actor = std::make_unique<CLoginActor>(m_view.get());
    m_observer = std::make_unique<TestSupport::LoginRecorder>();
    m_actor->Attach(m_observer.get());
}

void TestCommandLineLogin::signIn(const QString& user, const QString& pwd, const QString& epId)
{
    m_actor->loginFromCommandLine(user, pwd, m_services.signInUrl(), epId);
}

void TestCommandLineLogin::failToSignIn(const QString& user, const QString& pwd, const QString& cimUrl,
                                        const QString& epId)
{
    const QObject scope;
    QTimer::singleShot(0, &scope, [&] { m_actor->loginFromCommandLine(user, pwd, cimUrl, epId); });
    QTimer::singleShot(PatienceMs, &scope, [] { QCoreApplication::exit(StillRunning); });
    QCOMPARE(QCoreApplication::exec(), 0);
}

NelvoSDK::LoginSession TestCommandLineLogin::session() const
{
    return m_observer->sessions.isEmpty() ? NelvoSDK::LoginSession{} : m_observer->sessions.constLast();
}

void TestCommandLineLogin::entersTheEnterprise()
{
    const QString user = QStringLiteral("lina");
    signIn(user, md5(passwordOf(user).toUtf8()), QStringLiteral("1003"));
    QCOMPARE(m_observer->calls, QStringList{QStringLiteral("succeeded")});
    QCOMPARE(name(), QStringLiteral("江南水利工程局"));
    QVERIFY(session().extra.at(L"epId") == L"1003");
    QCOMPARE(QString::fromStdWString(session().sdkAddr), m_services.editorUrl());
    QVERIFY(!session().cookies.empty());
    QVERIFY(!session().iotToken.empty());
    QCOMPARE(m_actor->appList().size(), 12);
}

void TestCommandLineLogin::sendsTheSevenRequests()
{
    signIn(QStringLiteral("zhangwei"), md5("123456"), QStringLiteral("1001"));
    QByteArrayList lines;
    QByteArray binding;
    for (const NelvoDevkit::LoggedRequest& request : m_services.log().requests()) {
        if (request.path() != "/login/success")
            lines.append(request.method + ' ' + request.target);
        if (request.path() == "/rs/casLogin/casLogin")
            binding = request.body;
    }
    QCOMPARE(lines, (QByteArrayList{"GET /login", "POST /login", "GET /rs/casLogin/listCompany",
                                    "POST /rs/casLogin/casLogin", "GET /rs/casLogin/serverUrl",
                                    "GET /rs/cim/nelvo/client_token", "GET /org/heartbeat"}));
    QCOMPARE(QJsonDocument::fromJson(binding).object().value(QStringLiteral("epid")).toString(),
             QStringLiteral("1001"));
}

//! The password is expected as its MD5. A clear password is sent unchanged, and the service rejects it.
void TestCommandLineLogin::sendsThePasswordAsItIs()
{
    MessageLog log;
    failToSignIn(QStringLiteral("zhangwei"), QStringLiteral("123456"), m_services.signInUrl(),
                 QStringLiteral("1001"));
    QVERIFY(m_services.log().requests().at(1).body.endsWith("&username=zhangwei&password=123456"));
    QCOMPARE(m_observer->calls.constFirst(), QStringLiteral("failed"));

    m_services.log().clear();
    signIn(QStringLiteral("zhangwei"), md5("123456"), QStringLiteral("1001"));
    QVERIFY(m_services.log().requests().at(1).body.endsWith("&password=e10adc3949ba59abbe56e057f20f883e"));
    QCOMPARE(m_observer->calls.constLast(), QStringLiteral("succeeded"));
}

void TestCommandLineLogin::showsNoWindowAndWritesNoCache()
{
    signIn(QStringLiteral("zhangwei"), md5("123456"), QStringLiteral("1001"));
    QCOMPARE(m_observer->sessions.size(), 1);
    QVERIFY(!m_view->isVisible());
    QVERIFY(m_view->source().isEmpty());
    QVERIFY(!m_cache->exists());
}

void TestCommandLineLogin::unknownEnterpriseGoesAheadWithoutAName()
{
    signIn(QStringLiteral("zhangwei"), md5("123456"), QStringLiteral("77"));
    QCOMPARE(m_observer->calls, QStringList{QStringLiteral("succeeded")});
    QCOMPARE(name(), QString());
    QVERIFY(session().extra.at(L"epId") == L"77");
    QCOMPARE(QString::fromStdWString(session().sdkAddr), m_services.editorUrl());
}

void TestCommandLineLogin::idsAreComparedAsNumbers_data()
{
    QTest::addColumn<QByteArray>("element");
    QTest::addColumn<QString>("epId");
    QTest::addColumn<bool>("matches");
    const QByteArray named = R"({"enterpriseName": "x", "enterpriseId": %1})";
    const auto withId = [&named](const char* id) { return QByteArray(named).replace("%1", id); };
    row("equal", withId("5"), "5", true);
    row("another", withId("5"), "6", false);
    row("leading zero", withId("5"), "05", true);
    row("zero and zero", withId("0"), "0", true);
    row("text counts as zero", withId("\"5\""), "0", true);
    row("text is not its number", withId("\"5\""), "5", false);
    row("null counts as zero", withId("null"), "0", true);
    row("fraction counts as zero", withId("5.5"), "0", true);
    row("missing counts as zero", QByteArray(R"({"enterpriseName": "x"})"), "0", true);
    row("non-numeric argument counts as zero", withId("0"), "first", true);
    row("non-numeric argument is no other number", withId("5"), "first", false);
}

void TestCommandLineLogin::idsAreComparedAsNumbers()
{
    QFETCH(QByteArray, element);
    QFETCH(QString, epId);
    QFETCH(bool, matches);
    m_services.setReply("GET", ListPath, json('[' + element + ']'));
    signIn(QStringLiteral("zhangwei"), md5("123456"), epId);
    QCOMPARE(name(), matches ? QStringLiteral("x") : QString());
    QCOMPARE(QString::fromStdWString(session().extra.at(L"epId")), epId);
}

void TestCommandLineLogin::firstEnterpriseOfTheIdCounts()
{
    m_services.setReply("GET", ListPath, json(R"([{"enterpriseId": 4, "enterpriseName": "four"},
                                        {"enterpriseId": 5, "enterpriseName": "first"},
                                        {"enterpriseId": 5, "enterpriseName": "second"}])"));
    signIn(QStringLiteral("zhangwei"), md5("123456"), QStringLiteral("5"));
    QCOMPARE(name(), QStringLiteral("first"));
}

void TestCommandLineLogin::failureIsLoggedAndGoesThroughAllTheSame_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("message");
    row("wrong password", "lina", m_services.signInUrl(), "read compList failed");
    row("nothing given", QString(), QString(), "Protocol \"\" is unknown");
}

void TestCommandLineLogin::failureIsLoggedAndGoesThroughAllTheSame()
{
    QFETCH(QString, user);
    QFETCH(QString, url);
    QFETCH(QString, message);
    MessageLog log;
    failToSignIn(user, QStringLiteral("wrong"), url, QStringLiteral("1003"));
    QVERIFY2(log.warnings().contains(LoginFailedPrefix + message),
             qPrintable(log.warnings().join(QLatin1Char('\n'))));
    QCOMPARE(m_observer->calls, (QStringList{QStringLiteral("failed"), QStringLiteral("succeeded")}));
    // The remaining steps ran: they logged at least one more warning and found no editor service.
    const int failed = log.warnings().indexOf(LoginFailedPrefix + message);
    QVERIFY(log.warnings().size() > failed + 1);
    QVERIFY(log.debugs().contains(QStringLiteral("获取代理地址失败, 请检查服务器部署")));
    QVERIFY(session().loggedIn);
    QVERIFY(session().sdkAddr.empty());
}

//! The sign-in completes before the event loop ends.
void TestCommandLineLogin::failureAsksTheApplicationToQuit()
{
    MessageLog log;
    bool ended = false;
    bool ranThroughBefore = false;
    connect(qApp, &QCoreApplication::aboutToQuit, m_actor.get(), [&ended] { ended = true; });
    const QObject scope;
    QTimer::singleShot(PatienceMs, &scope, [] { QCoreApplication::exit(StillRunning); });
    QTimer::singleShot(0, &scope, [&] {
        m_actor->loginFromCommandLine({}, {}, {}, QStringLiteral("0"));
        ranThroughBefore = !ended && m_observer->sessions.size() == 1;
    });
    QCOMPARE(QCoreApplication::exec(), 0);
    QVERIFY(ended);
    QVERIFY(ranThroughBefore);
}

void TestCommandLineLogin::successDoesNotAskTheApplicationToQuit()
{
    QTimer::singleShot(0, m_actor.get(), [this] {
        signIn(QStringLiteral("zhangwei"), md5("123456"), QStringLiteral("1001"));
        QTimer::singleShot(0, m_actor.get(), [] { QCoreApplication::exit(StillRunning); });
    });
    QCOMPARE(QCoreApplication::exec(), StillRunning);
    QCOMPARE(m_observer->sessions.size(), 1);
}

//! A failed sign-in keeps the list of the previous one and searches the enterprise in it.
void TestCommandLineLogin::failureEntersFromTheEarlierList()
{
    signIn(QStringLiteral("lina"), md5(passwordOf(QStringLiteral("lina")).toUtf8()), QStringLiteral("1003"));
    m_services.addFault({NelvoDevkit::Fault::Status, QStringLiteral("/login"), "GET", 503, true});
    MessageLog log;
    failToSignIn(QStringLiteral("lina"), md5(passwordOf(QStringLiteral("lina")).toUtf8()),
                 m_services.signInUrl(), QStringLiteral("1002"));
    QVERIFY(log.warnings().constFirst().startsWith(LoginFailedPrefix));
    // The previous session is still valid, so entering the enterprise succeeds.
    QCOMPARE(name(), QStringLiteral("东方轨道交通有限公司"));
}

QTEST_MAIN(TestCommandLineLogin)
#include "test_commandlinelogin.moc"
