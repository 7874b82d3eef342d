#include "login/loginactor.h"

#include "login/tools.h"
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
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QQmlContext>
#include <QQuickView>
#include <QSignalSpy>
#include <QTimer>
#include <QtTest>

Q_DECLARE_METATYPE(NelvoDevkit::HttpReply)

using NelvoDevkit::Fault;
using NelvoDevkit::HttpReply;
using NelvoDevkit::LoggedRequest;
using NelvoPlugin::CLoginActor;
using TestSupport::ApplicationFile;
using TestSupport::json;
using TestSupport::MessageLog;
using TestSupport::passwordOf;
using TestSupport::row;

namespace {

//! A window, its actor and an observer. Each test creates its own.
struct SignIn {
    SignIn()
    {
        qmlRegisterType<CTools>("PercentTools", 1, 0, "PercentTools");
        view.rootContext()->setContextProperty(QStringLiteral("view"), &view);
        actor.Attach(&observer);
    }
    //! Calls onShowHome and returns the session that the observer received.
    NelvoSDK::LoginSession published()
    {
        actor.onShowHome();
        return observer.sessions.isEmpty() ? NelvoSDK::LoginSession{} : observer.sessions.constLast();
    }

    QQuickView view;
    CLoginActor actor{&view};
    TestSupport::LoginRecorder observer;
};

const auto ListPath = QStringLiteral("/rs/casLogin/listCompany");
const auto BindPath = QStringLiteral("/rs/casLogin/casLogin");
const auto ServersPath = QStringLiteral("/rs/casLogin/serverUrl");
const auto TokenPath = QStringLiteral("/rs/cim/nelvo/client_token");
const auto HeartbeatPath = QStringLiteral("/org/heartbeat");
const auto HeartbeatFailed = QStringLiteral("CLoginActor::onLogin getprojList /org/heartbeat falied!");
const auto NoEditor = QStringLiteral("获取代理地址失败, 请检查服务器部署");

QString text(const std::wstring& wide)
{
    return QString::fromStdWString(wide);
}

} // namespace

class TestLoginActor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void metaObjectSurface();
    void publishesItselfToThePages();
    void reservedOperationsDoNothing();
    void getTokenGivesEmptyText();

    void loginReadsTheCompanyList();
    void loginSendsThreeFormRequests();
    void loginWithMd5SendsItUnchanged();
    void loginIgnoresThePdsAddress();
    void rejectedPasswordShowsAtTheCompanyList();
    void rejectionByStatusShowsItsError();
    void failedLoginTellsEveryObserverOnce();
    void loginFailures_data();
    void loginFailures();
    void emptyCompanyListIsASuccess();
    void companyObjectIsASuccessWithoutCompanies();
    void failedLoginLeavesTheEarlierList();
    void pageWithoutTicketStillLeadsToThePost();
    void pagesPostResultIsNotLookedAt();
    void addressIsKeptOnlyOnceTheFormPassed();
    void addressIsReadTolerantly();
    void loginRepliesAreKept();
    void aLoginInsideALoginEndsFirst();

    void onLoginFillsTheSession();
    void onLoginSendsFourRequests();
    void onLoginBindsAtTheGivenAddress();
    void onLoginLogsTheRequestAfterEachCall();
    void tokenIsTakenAsItStands();
    void serverWalk_data();
    void serverWalk();
    void iotAddressBecomesAProperty();
    void withoutIotServiceThePropertyStays();
    void withoutSuffixBothAddressesAreEqual();
    void addressFilesAreReadOnce();
    void onLoginFailures_data();
    void onLoginFailures();
    void failedOnLoginKeepsTheEarlierSession_data();
    void failedOnLoginKeepsTheEarlierSession();
    void repeatedSignInYieldsEmptyCookies();
    void changedCookieCountsAsNew();
    void onlyCookiesOfTheHeartbeatCount();
    void cookieTextHoldsAttributesAndCommas();
    void cookieTextMayHoldAnyCharacter();
    void sessionIsJsonText();
    void sessionObjectHasItsSevenTexts();
    void sessionStaysUntilTheNextOne();

    void showHomeWithoutOnLogin();
    void showHomeClosesTheWindow();
    void observersShareOneCopy();
    void showLoginDuringACallWaitsForItsEnd();
    void resetCacheKeepsThePassword();
    void resetCacheDropsThePassword();

    void logoutGoesOutAtQuit();
    void logoutLeavesJarAndAddress();
    void logoutWithoutSignInIsLogged();

private:
    QString login(SignIn& signIn, const QString& user = QStringLiteral("lina"));
    QByteArrayList targets() const;
    //! Makes the editor service set these cookies in its heartbeat replies.
    void setHeartbeatCookies(const QByteArrayList& cookies);

    TestSupport::StartedServices m_services;
    QString m_url;
    std::unique_ptr<ApplicationFile> m_defaultServer;
    std::unique_ptr<ApplicationFile> m_installedVersion;
};

void TestLoginActor::initTestCase()
{
    m_url = m_services.signInUrl();
    m_defaultServer = std::make_unique<ApplicationFile>(QStringLiteral("defaultServerAddress.json"));
    m_installedVersion = std::make_unique<ApplicationFile>(QStringLiteral("updateConfig.json"));
    m_installedVersion->write(R"({"version": "1.0.0"})");
}

void TestLoginActor::init()
{
    m_services.reset();
    m_services.forgetSessions();
    sharedCookieJar()->setAllCookies({});
    qApp->setProperty("iotUrl", QVariant());
    m_defaultServer->write(R"({"defaultServer": "http://default"})");
}

QString TestLoginActor::login(SignIn& signIn, const QString& user)
{
    return signIn.actor.login(user, passwordOf(user), m_url, {});
}

QByteArrayList TestLoginActor::targets() const
{
    QByteArrayList lines;
    const QVector<LoggedRequest> requests = m_services.log().requests();
    for (const LoggedRequest& request : requests)
        lines.append(request.method + ' ' + request.target);
    return lines;
}

void TestLoginActor::setHeartbeatCookies(const QByteArrayList& cookies)
{
    HttpReply reply = json("{}");
    for (const QByteArray& cookie : cookies)
        NelvoDevkit::setCookie(reply, cookie);
    m_services.setReply("GET", HeartbeatPath, reply);
}

void TestLoginActor::metaObjectSurface()
{
    const QMetaObject& meta = CLoginActor::staticMetaObject;
    QByteArrayList methods;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index)
        methods.append(meta.method(index).typeName() + QByteArray(" ") +
                       meta.method(index).methodSignature());
    QCOMPARE(methods, (QByteArrayList{"void succeed()", "void appListChanged()",
                                      "QString login(QString,QString,QString,QString,bool)",
                                      "QString login(QString,QString,QString,QString)",
                                      "QString getToken(QString,QString)",
                                      "void onResetCache(QVariant,QVariant,QVariant,QVariant,QVariant)",
                                      "void onLogin(QString,QString,QString)", "void onShowHome()"}));
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 1);
    const QMetaProperty appList = meta.property(meta.propertyOffset());
    QCOMPARE(appList.name(), "appList");
    QCOMPARE(appList.typeName(), "QJsonArray");
    QCOMPARE(appList.notifySignal().name(), QByteArray("appListChanged"));
    QVERIFY(appList.isReadable() && !appList.isWritable());
}

void TestLoginActor::publishesItselfToThePages()
{
    SignIn signIn;
    QQmlContext* context = signIn.view.rootContext();
    QCOMPARE(context->contextProperty(QStringLiteral("loginCtrl")).value<QObject*>(), &signIn.actor);
    const auto* updater = context->contextProperty(QStringLiteral("updater")).value<QObject*>();
    QVERIFY(qobject_cast<const CUpdater*>(updater));
    QVERIFY(!updater->parent());
    QCOMPARE(updater->property("localVersion"), QVariant("1.0.0"));
    QCOMPARE(context->contextProperty(QStringLiteral("defaultUrl")), QVariant("http://default"));
    QVERIFY(!signIn.actor.parent());
    QVERIFY(!signIn.view.isVisible());
}

void TestLoginActor::reservedOperationsDoNothing()
{
    SignIn signIn;
    signIn.actor.ReservedFirst();
    signIn.actor.ReservedSecond();
    QVERIFY(!signIn.actor.ReservedFlag());
    QVERIFY(!signIn.view.isVisible());
}

void TestLoginActor::getTokenGivesEmptyText()
{
    SignIn signIn;
    const QSignalSpy changed(&signIn.actor, &CLoginActor::appListChanged);
    QCOMPARE(signIn.actor.getToken(QStringLiteral("app"), QStringLiteral("secret")), QString());
    QCOMPARE(changed.count(), 0);
    QVERIFY(m_services.log().requests().isEmpty());
}

void TestLoginActor::loginReadsTheCompanyList()
{
    SignIn signIn;
    QVector<QJsonArray> lists;
    connect(&signIn.actor, &CLoginActor::appListChanged,
            [&signIn, &lists] { lists.append(signIn.actor.appList()); });
    MessageLog log;
    QCOMPARE(login(signIn), QString());
    QCOMPARE(lists, QVector<QJsonArray>{signIn.actor.appList()});
    QCOMPARE(signIn.observer.failures, 0);
    QVERIFY(signIn.actor.appList().size() > 1);
    const QJsonObject company = signIn.actor.appList().at(0).toObject();
    QVERIFY(company.value(QStringLiteral("enterpriseId")).isDouble());
    QVERIFY(!company.value(QStringLiteral("enterpriseName")).toString().isEmpty());
    QVERIFY(log.entries().isEmpty());
}

void TestLoginActor::loginSendsThreeFormRequests()
{
    SignIn signIn;
    login(signIn);
    const QVector<LoggedRequest> requests = m_services.log().requests();
    QCOMPARE(requests.constFirst().method + requests.constFirst().target, QByteArray("GET/login"));
    QCOMPARE(requests.at(1).method + requests.at(1).target, QByteArray("POST/login"));
    QCOMPARE(requests.constLast().target, ListPath.toLatin1());
    for (const LoggedRequest& request : {requests.constFirst(), requests.at(1), requests.constLast()})
        QCOMPARE(request.header("Content-Type"), QByteArray("application/x-www-form-urlencoded"));
    QVERIFY(requests.at(1).body.startsWith("%5FeventId=submit&execution=e"));
    QVERIFY(requests.at(1).body.endsWith(
        "&username=lina&password=" +
        TestSupport::md5(passwordOf(QStringLiteral("lina")).toUtf8()).toLatin1()));
    QVERIFY(!requests.at(1).body.endsWith('\n'));
}

void TestLoginActor::loginWithMd5SendsItUnchanged()
{
    SignIn signIn;
    signIn.actor.login(QStringLiteral("lina"), QStringLiteral("clear text"), m_url, {}, true);
    QVERIFY(m_services.log().requests().at(1).body.endsWith("&password=clear text"));

    m_services.log().clear();
    const QString digest = TestSupport::md5(passwordOf(QStringLiteral("lina")).toUtf8());
    QCOMPARE(signIn.actor.login(QStringLiteral("lina"), digest, m_url, {}, true), QString());
}

void TestLoginActor::loginIgnoresThePdsAddress()
{
    const HttpReply page{200, "text/html", "<html><body id=\"cas\"/></html>", {}};
    m_services.setReply("GET", QStringLiteral("/login"), page);
    m_services.setReply("POST", QStringLiteral("/login"), page);
    m_services.setReply("GET", ListPath, json("[]"));
    const auto sent = [this](const QString& pdsUrl) {
        m_services.log().clear();
        SignIn signIn;
        signIn.actor.login(QStringLiteral("lina"), QStringLiteral("x"), m_url, pdsUrl);
        QByteArrayList lines = targets();
        lines.append(m_services.log().requests().at(1).body);
        return lines;
    };
    QCOMPARE(sent(QStringLiteral("http://pds")), sent({}));
}

void TestLoginActor::rejectedPasswordShowsAtTheCompanyList()
{
    SignIn signIn;
    MessageLog log;
    QCOMPARE(signIn.actor.login(QStringLiteral("lina"), QStringLiteral("wrong"), m_url, {}),
             QStringLiteral("read compList failed"));
    QCOMPARE(log.warnings(), QStringList{QStringLiteral("parse json failed: illegal value")});
    QCOMPARE(log.entries().constFirst().file, QStringLiteral("login/loginactor.cpp"));
    QCOMPARE(signIn.observer.failures, 1);
}

void TestLoginActor::rejectionByStatusShowsItsError()
{
    m_services.setReply("GET", ListPath, HttpReply{403, "text/plain", {}, {}});
    SignIn signIn;
    QCOMPARE(signIn.actor.login(QStringLiteral("lina"), QStringLiteral("wrong"), m_url, {}),
             QStringLiteral("Error transferring %1%2 - server replied: Forbidden").arg(m_url, ListPath));
}

void TestLoginActor::failedLoginTellsEveryObserverOnce()
{
    SignIn signIn;
    TestSupport::LoginRecorder second;
    signIn.actor.Attach(&second);
    signIn.actor.login(QStringLiteral("lina"), QStringLiteral("wrong"), m_url, {});
    QCOMPARE(signIn.observer.failures, 1);
    QCOMPARE(second.failures, 1);
    signIn.actor.Detach(&second);
    signIn.actor.login(QStringLiteral("lina"), QStringLiteral("wrong"), m_url, {});
    QCOMPARE(signIn.observer.failures, 2);
    QCOMPARE(second.failures, 1);
}

void TestLoginActor::loginFailures_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QString>("path");
    QTest::addColumn<HttpReply>("reply");
    QTest::addColumn<QString>("message");
    QTest::addColumn<bool>("warned");

    const auto replied = [this](const QString& path) {
        return QStringLiteral("Error transferring %1%2 - server replied: Service Unavailable")
            .arg(m_url, path);
    };
    const HttpReply unavailable{503, "text/plain", {}, {}};
    const auto loginPath = QStringLiteral("/login");
    row("form page fails", QByteArray("GET"), loginPath, unavailable, replied(loginPath), false);
    row("form page unreadable", QByteArray("GET"), loginPath, HttpReply{200, "text/html", "<html>", {}},
        "parseLoginArgs failed", true);
    row("form page empty", QByteArray("GET"), loginPath, HttpReply{}, "parseLoginArgs failed", true);
    const QByteArray tooDeep =
        "<html>" + QByteArray("<b>").repeated(20000) + QByteArray("</b>").repeated(20000) + "</html>";
    row("form page too deep", QByteArray("GET"), loginPath, HttpReply{200, "text/html", tooDeep, {}},
        "parseLoginArgs failed", true);
    row("post fails", QByteArray("POST"), loginPath, unavailable, replied(loginPath), false);
    row("result unreadable", QByteArray("POST"), loginPath, HttpReply{200, "text/html", "<br>", {}},
        "parsePostResult failed", true);
    row("result too deep", QByteArray("POST"), loginPath, HttpReply{200, "text/html", tooDeep, {}},
        "parsePostResult failed", true);
    row("list fails", QByteArray("GET"), ListPath, unavailable, replied(ListPath), false);
    row("list is no JSON", QByteArray("GET"), ListPath, HttpReply{200, "text/html", "<html/>", {}},
        "read compList failed", true);
    row("list empty", QByteArray("GET"), ListPath, HttpReply{}, "read compList failed", true);
}

void TestLoginActor::loginFailures()
{
    QFETCH(QByteArray, method);
    QFETCH(QString, path);
    QFETCH(HttpReply, reply);
    QFETCH(QString, message);
    QFETCH(bool, warned);
    m_services.setReply(method, path, reply);

    SignIn signIn;
    const QSignalSpy changed(&signIn.actor, &CLoginActor::appListChanged);
    MessageLog log;
    QCOMPARE(login(signIn), message);
    QCOMPARE(signIn.observer.failures, 1);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(log.warnings().size(), warned ? 1 : 0);
}

void TestLoginActor::emptyCompanyListIsASuccess()
{
    SignIn signIn;
    const QSignalSpy changed(&signIn.actor, &CLoginActor::appListChanged);
    QCOMPARE(login(signIn, QStringLiteral("wangfang")), QString());
    QCOMPARE(changed.count(), 1);
    QVERIFY(signIn.actor.appList().isEmpty());
}

void TestLoginActor::companyObjectIsASuccessWithoutCompanies()
{
    SignIn signIn;
    QCOMPARE(login(signIn), QString());
    QVERIFY(!signIn.actor.appList().isEmpty());
    m_services.setReply("GET", ListPath, json("{\"data\": []}"));
    const QSignalSpy changed(&signIn.actor, &CLoginActor::appListChanged);
    QCOMPARE(login(signIn), QString());
    QVERIFY(signIn.actor.appList().isEmpty());
    QCOMPARE(changed.count(), 1);
}

void TestLoginActor::failedLoginLeavesTheEarlierList()
{
    SignIn signIn;
    login(signIn);
    const QJsonArray earlier = signIn.actor.appList();
    m_services.setReply("GET", ListPath, HttpReply{});
    QVERIFY(!login(signIn).isEmpty());
    QCOMPARE(signIn.actor.appList(), earlier);
    QVERIFY(!sharedCookieJar()->allCookies().isEmpty());
}

void TestLoginActor::pageWithoutTicketStillLeadsToThePost()
{
    m_services.setReply("GET", QStringLiteral("/login"),
                        HttpReply{200, "text/html", "<html><body id=\"cas\"/></html>", {}});
    SignIn signIn;
    login(signIn);
    QVERIFY(m_services.log().requests().at(1).body.startsWith("%5FeventId=&execution=&lt=&productId=86&"));
}

void TestLoginActor::pagesPostResultIsNotLookedAt()
{
    m_services.setReply("POST", QStringLiteral("/login"), HttpReply{200, "text/html", "<any/>", {}});
    m_services.setReply("GET", ListPath, json("[]"));
    SignIn signIn;
    QCOMPARE(login(signIn), QString());
}

void TestLoginActor::addressIsKeptOnlyOnceTheFormPassed()
{
    m_services.setReply("POST", QStringLiteral("/login"), HttpReply{200, "text/html", "<br>", {}});
    SignIn signIn;
    login(signIn);
    signIn.actor.onLogin(m_url, QStringLiteral("1"), QStringLiteral("x"));
    QVERIFY(!targets().contains("GET " + ServersPath.toLatin1()));

    // The address is kept as soon as the form has passed, even if the company list fails.
    m_services.clearReplies();
    m_services.addFault({Fault::Status, ListPath, {}, 503, false});
    QVERIFY(!login(signIn).isEmpty());
    signIn.actor.onLogin(m_url, QStringLiteral("1"), QStringLiteral("x"));
    QVERIFY(targets().contains("GET " + ServersPath.toLatin1()));
}

void TestLoginActor::addressIsReadTolerantly()
{
    const auto path = [](const QString& tail) { return QStringLiteral("/a%20b") + tail; };
    for (const char* method : {"GET", "POST"})
        m_services.setReply(method, path(QStringLiteral("/login")), {200, "text/html", "<html/>", {}});
    m_services.setReply("GET", path(ListPath), json("[]"));
    m_services.setReply("POST", path(BindPath), json("{}"));
    m_services.setReply("GET", path(TokenPath), json("{}"));
    m_services.setReply("GET", path(HeartbeatPath), json("{}"));
    const QString editor = m_services.editorUrl() + QStringLiteral("/a b");
    m_services.setReply("GET", path(ServersPath),
                        NelvoDevkit::jsonReply(QJsonDocument(
                            QJsonArray{QJsonObject{{"serverName", "varlo-editor"}, {"serverURL", editor}}})));
    SignIn signIn;
    const QString address = m_url + QStringLiteral("/a b");
    QCOMPARE(signIn.actor.login(QStringLiteral("lina"), QStringLiteral("x"), address, {}), QString());
    signIn.actor.onLogin(address, QStringLiteral("1"), QStringLiteral("x"));
    QCOMPARE(text(signIn.published().sdkAddr), editor);
    QCOMPARE(targets().size(), 7);
}

void TestLoginActor::loginRepliesAreKept()
{
    const int before = sharedNetworkManager()->findChildren<QNetworkReply*>().size();
    SignIn signIn;
    login(signIn);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(sharedNetworkManager()->findChildren<QNetworkReply*>().size(), before + 3);
}

void TestLoginActor::aLoginInsideALoginEndsFirst()
{
    const auto inner = QStringLiteral("/inner");
    for (const char* method : {"GET", "POST"})
        m_services.setReply(method, inner + "/login", {200, "text/html", "<html/>", {}});
    m_services.setReply("GET", inner + ListPath, json("[]"));
    m_services.addFault({Fault::Stall, ListPath, {}, 0, true});
    SignIn signIn;
    QStringList ended;
    QTimer watch;
    connect(&watch, &QTimer::timeout, this, [&] {
        if (!targets().contains("GET " + ListPath.toLatin1()))
            return;
        watch.stop();
        ended.append(QStringLiteral("inner:") + signIn.actor.login("zhangwei", "x", m_url + inner, {}));
        m_services.clearFaults();
    });
    watch.start(1);
    ended.append(QStringLiteral("outer:") + login(signIn));
    QCOMPARE(ended, (QStringList{QStringLiteral("inner:"), QStringLiteral("outer:")}));

    // The next calls use the address of the login that ended last.
    signIn.actor.onLogin(m_url, QStringLiteral("1"), QStringLiteral("x"));
    QVERIFY(targets().contains("GET " + ServersPath.toLatin1()));
}

void TestLoginActor::onLoginFillsTheSession()
{
    const ApplicationFile suffix(QStringLiteral("ProxyUrlSuffix.json"));
    suffix.write(R"({"UrlSuffix": "/proxy"})");
    SignIn signIn;
    login(signIn);
    const QJsonObject company = signIn.actor.appList().at(0).toObject();
    const QString id = QString::number(company.value(QStringLiteral("enterpriseId")).toInt());
    const QString name = company.value(QStringLiteral("enterpriseName")).toString();
    signIn.actor.onLogin(m_url, id, name);
    QVERIFY(signIn.observer.sessions.isEmpty());

    const NelvoSDK::LoginSession session = signIn.published();
    QCOMPARE(text(session.sdkAddr), m_services.editorUrl());
    QCOMPARE(text(session.serverAddr), m_services.editorUrl() + QStringLiteral("/proxy"));
    QCOMPARE(text(session.epName), name);
    QVERIFY(!session.iotToken.empty());
    QVERIFY(!session.cookies.empty());
    QVERIFY(session.token.empty());
    QVERIFY(session.appVer.empty());
    QVERIFY(session.loggedIn);
    QCOMPARE(session.extra.size(), std::size_t(2));
    QCOMPARE(text(session.extra.at(L"epId")), id);
    QCOMPARE(text(session.extra.at(L"epName")), name);
}

void TestLoginActor::onLoginSendsFourRequests()
{
    SignIn signIn;
    login(signIn);
    m_services.log().clear();
    signIn.actor.onLogin(m_url, QStringLiteral("12"), QStringLiteral("企业"));
    QCOMPARE(targets(), (QByteArrayList{"POST " + BindPath.toLatin1(), "GET " + ServersPath.toLatin1(),
                                        "GET " + TokenPath.toLatin1(), "GET " + HeartbeatPath.toLatin1()}));
    const LoggedRequest binding = m_services.log().requests().constFirst();
    QCOMPARE(binding.body, QByteArray("{\n    \"epid\": \"12\",\n    \"version\": \"1.0.0\"\n}\n"));
    QCOMPARE(binding.header("Content-Type"), QByteArray("application/json"));
    QCOMPARE(m_services.log().requests().constLast().service, QByteArray("editor"));
    for (int index = 1; index < 4; ++index)
        QVERIFY(m_services.log().requests().at(index).header("Content-Type").isNull());
}

void TestLoginActor::onLoginBindsAtTheGivenAddress()
{
    SignIn signIn;
    login(signIn);
    m_services.log().clear();
    signIn.actor.onLogin(m_url + QStringLiteral("/other"), QStringLiteral("1"), QStringLiteral("x"));
    QCOMPARE(targets().mid(0, 3),
             (QByteArrayList{"POST /other" + BindPath.toLatin1(), "GET " + ServersPath.toLatin1(),
                             "GET " + TokenPath.toLatin1()}));
}

void TestLoginActor::onLoginLogsTheRequestAfterEachCall()
{
    SignIn signIn;
    login(signIn);
    const QStringList once{QStringLiteral("{"), QStringLiteral("    \"epid\": \"12\","),
                           QStringLiteral("    \"version\": \"1.0.0\""), QStringLiteral("}"), QString()};
    m_services.setReply("GET", TokenPath, HttpReply{200, "text/plain", "t", {}});
    MessageLog log;
    signIn.actor.onLogin(m_url, QStringLiteral("12"), QStringLiteral("x"));
    QCOMPARE(log.warnings(), once + once + once);
    QCOMPARE(log.debugs(), QStringList{QStringLiteral("cookiesList: ") + text(signIn.published().cookies)});
}

void TestLoginActor::tokenIsTakenAsItStands()
{
    SignIn signIn;
    login(signIn);
    m_services.setReply("GET", TokenPath, json("\"\xE4\xBB\xA4\xE7\x89\x8C-1\"\n"));
    signIn.actor.onLogin(m_url, QStringLiteral("1"), QStringLiteral("x"));
    QCOMPARE(text(signIn.published().iotToken), QStringLiteral("\"令牌-1\"\n"));
}

void TestLoginActor::serverWalk_data()
{
    QTest::addColumn<QByteArrayList>("servers"); // name, address, name, address ...
    QTest::addColumn<QString>("editor");
    QTest::addColumn<QString>("iot");

    const QByteArray editor = "varlo-editor";
    const QByteArray iot = "iot_new";
    const QByteArray real = m_services.editorUrl().toLatin1();
    const QString found = m_services.editorUrl();
    row("editor first", QByteArrayList{editor, real, iot, "i"}, found, "i");
    row("iot first", QByteArrayList{iot, "i", editor, real}, found, "i");
    row("others passed over", QByteArrayList{"pds", "p", editor, real, "x", "y", iot, "i"}, found, "i");
    row("second editor wins before iot", QByteArrayList{editor, "http://no", editor, real, iot, "i"}, found,
        "i");
    row("later editor never read once both known",
        QByteArrayList{editor, real, iot, "i", editor, "http://no", iot, "j"}, found, "i");
    row("second iot wins before editor", QByteArrayList{iot, "h", iot, "i", editor, real, iot, "j"}, found,
        "i");
    row("empty editor address goes on looking", QByteArrayList{editor, "", editor, real, iot, "i"}, found,
        "i");
    row("empty editor address goes on looking, iot known", QByteArrayList{iot, "i", editor, "", editor, real},
        found, "i");
    row("empty iot address goes on looking", QByteArrayList{iot, "", editor, real, iot, "i"}, found, "i");
    row("empty iot address goes on looking, editor known", QByteArrayList{editor, real, iot, "", iot, "i"},
        found, "i");
    row("empty editor addresses go on looking",
        QByteArrayList{editor, "", iot, "i", editor, "", editor, real}, found, "i");
    row("empty editor address wins before iot", QByteArrayList{editor, real, editor, "", iot, "i"}, QString(),
        "i");
    row("empty editor addresses only", QByteArrayList{editor, "", iot, "i", editor, ""}, QString(), "i");
    row("no editor", QByteArrayList{iot, "i"}, QString(), "i");
    row("no iot", QByteArrayList{editor, real}, found, QString());
    row("names are case-sensitive", QByteArrayList{"Varlo-Editor", "http://no", editor, real, "IOT_new", "i"},
        found, QString());
}

void TestLoginActor::serverWalk()
{
    QFETCH(QByteArrayList, servers);
    QFETCH(QString, editor);
    QFETCH(QString, iot);
    QJsonArray array;
    for (int index = 0; index < servers.size(); index += 2) {
        array.append(QJsonObject{{"serverName", QString::fromLatin1(servers.at(index))},
                                 {"serverURL", QString::fromLatin1(servers.at(index + 1))}});
    }
    m_services.setReply("GET", ServersPath, json(QJsonDocument(array).toJson()));
    SignIn signIn;
    login(signIn);
    signIn.actor.onLogin(m_url, QStringLiteral("1"), QStringLiteral("x"));
    QCOMPARE(text(signIn.published().sdkAddr), editor);
    QCOMPARE(qApp->property("iotUrl").toString(), iot);
}

void TestLoginActor::iotAddressBecomesAProperty()
{
    SignIn signIn;
    login(signIn);
    signIn.actor.onLogin(m_url, QStringLiteral("1"), QStringLiteral("x"));
    QCOMPARE(qApp->property("iotUrl").type(), QVariant::String);
    QVERIFY(!qApp->property("iotUrl").toString().isEmpty());
}

void TestLoginActor::withoutIotServiceThePropertyStays()
{
    qApp->setProperty("iotUrl", QStringLiteral("earlier"));
    m_services.setReply("GET", ServersPath, json("[]"));
    SignIn signIn;
    login(signIn);
    signIn.actor.onLogin(m_url, QStringLiteral("1"), QStringLiteral("x"));
    QCOMPARE(qApp->property("iotUrl").toString(), QStringLiteral("earlier"));
}

void TestLoginActor::withoutSuffixBothAddressesAreEqual()
{
    SignIn signIn;
    login(signIn);
    signIn.actor.onLogin(m_url, QStringLiteral("1"), QStringLiteral("x"));
    const NelvoSDK::LoginSession session = signIn.published();
    QVERIFY(!session.sdkAddr.empty());
    QVERIFY(session.serverAddr == session.sdkAddr);
}

void TestLoginActor::addressFilesAreReadOnce()
{
    const ApplicationFile suffix(QStringLiteral("ProxyUrlSuffix.json"));
    suffix.write(R"({"UrlSuffix": "/proxy"})");
    SignIn signIn;
    suffix.write(R"({"UrlSuffix": "/later"})");
    m_defaultServer->write(R"({"defaultServer": "http://later"})");
    signIn.actor.ShowLogin();
    login(signIn);
    signIn.actor.onLogin(m_url, QStringLiteral("1"), QStringLiteral("x"));
    QCOMPARE(text(signIn.published().serverAddr), m_services.editorUrl() + QStringLiteral("/proxy"));
    signIn.actor.ShowLogin();
    QCOMPARE(signIn.view.rootContext()->contextProperty(QStringLiteral("defaultUrl")),
             QVariant("http://default"));
}

void TestLoginActor::onLoginFailures_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<HttpReply>("reply");
    QTest::addColumn<QString>("warning");
    QTest::addColumn<QString>("debug"); // empty if the session is filled despite the failure

    const auto replied = [](const QString& base, const QString& path) {
        return QStringLiteral("Error transferring %1%2 - server replied: Service Unavailable")
            .arg(base, path);
    };
    const HttpReply unavailable{503, "text/plain", {}, {}};
    const HttpReply noJson{200, "text/html", "<html/>", {}};
    const auto parse = QStringLiteral("parse json failed: illegal value");
    row("binding fails", BindPath, unavailable, replied(m_url, BindPath), QString());
    row("addresses fail", ServersPath, unavailable, replied(m_url, ServersPath), NoEditor);
    row("addresses are no JSON", ServersPath, noJson, parse, NoEditor);
    row("addresses are an object", ServersPath, json("{}"), QString(), NoEditor);
    row("no editor service", ServersPath, json("[{\"serverName\":\"iot_new\",\"serverURL\":\"i\"}]"),
        QString(), NoEditor);
    row("token fails", TokenPath, unavailable, replied(m_url, TokenPath), QString());
    const QString editor = m_services.editorUrl();
    row("heartbeat fails", HeartbeatPath, unavailable, replied(editor, HeartbeatPath), HeartbeatFailed);
    row("heartbeat is no JSON", HeartbeatPath, noJson, parse, HeartbeatFailed);
}

void TestLoginActor::onLoginFailures()
{
    QFETCH(QString, path);
    QFETCH(HttpReply, reply);
    QFETCH(QString, warning);
    QFETCH(QString, debug);
    SignIn signIn;
    login(signIn);
    for (const char* method : {"GET", "POST"})
        m_services.setReply(method, path, reply);

    MessageLog log;
    signIn.actor.onLogin(
        m_url,
        QString::number(
            signIn.actor.appList().at(0).toObject().value(QStringLiteral("enterpriseId")).toInt()),
        QStringLiteral("x"));
    if (!warning.isEmpty())
        QVERIFY2(log.warnings().contains(warning), qPrintable(log.warnings().join(QLatin1Char('|'))));
    QCOMPARE(signIn.observer.failures, 0);
    const NelvoSDK::LoginSession session = signIn.published();
    if (debug.isEmpty()) {
        QCOMPARE(text(session.sdkAddr), m_services.editorUrl());
    } else {
        QCOMPARE(log.debugs(), QStringList{debug});
        QVERIFY(session.sdkAddr.empty());
        QVERIFY(session.loggedIn);
    }
    // The token is empty in every row: it was not issued without a binding, its call failed, or the session
    // was not filled.
    QVERIFY(session.iotToken.empty());
}

void TestLoginActor::failedOnLoginKeepsTheEarlierSession_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<HttpReply>("reply");
    const HttpReply unavailable{503, "text/plain", {}, {}};
    QTest::newRow("addresses fail") << ServersPath << unavailable;
    QTest::newRow("addresses are no JSON") << ServersPath << HttpReply{200, "text/html", "<html/>", {}};
    QTest::newRow("no editor service") << ServersPath << json("[]");
    QTest::newRow("heartbeat fails") << HeartbeatPath << unavailable;
}

void TestLoginActor::failedOnLoginKeepsTheEarlierSession()
{
    QFETCH(QString, path);
    QFETCH(HttpReply, reply);
    SignIn signIn;
    login(signIn);
    signIn.actor.onLogin(m_url, QStringLiteral("1"), QStringLiteral("first"));
    for (const char* method : {"GET", "POST"})
        m_services.setReply(method, path, reply);
    signIn.actor.onLogin(m_url, QStringLiteral("2"), QStringLiteral("second"));
    const NelvoSDK::LoginSession session = signIn.published();
    QCOMPARE(text(session.epName), QStringLiteral("first"));
    QCOMPARE(text(session.extra.at(L"epId")), QStringLiteral("1"));
    QCOMPARE(signIn.observer.failures, 0);
}

void TestLoginActor::repeatedSignInYieldsEmptyCookies()
{
    SignIn signIn;
    login(signIn);
    signIn.actor.onLogin(m_url, QStringLiteral("1"), QStringLiteral("x"));
    QVERIFY(!signIn.published().cookies.empty());
    MessageLog log;
    signIn.actor.onLogin(m_url, QStringLiteral("1"), QStringLiteral("x"));
    QVERIFY(signIn.published().cookies.empty());
    QCOMPARE(log.debugs(), QStringList{QStringLiteral("cookiesList: ")});
}

void TestLoginActor::changedCookieCountsAsNew()
{
    SignIn signIn;
    login(signIn);
    setHeartbeatCookies({"a=1; Path=/", "b=1; Path=/"});
    signIn.actor.onLogin(m_url, QStringLiteral("1"), QStringLiteral("x"));
    QCOMPARE(text(signIn.published().cookies),
             QStringLiteral("a=1; domain=127.0.0.1; path=/,b=1; domain=127.0.0.1; path=/"));
    setHeartbeatCookies({"a=2; Path=/", "b=1; Path=/"});
    signIn.actor.onLogin(m_url, QStringLiteral("1"), QStringLiteral("x"));
    QCOMPARE(text(signIn.published().cookies), QStringLiteral("a=2; domain=127.0.0.1; path=/"));
}

void TestLoginActor::onlyCookiesOfTheHeartbeatCount()
{
    SignIn signIn;
    login(signIn);
    m_services.setReply("GET", TokenPath,
                        HttpReply{200, "text/plain", "t", {{"Set-Cookie", "before=1; Path=/"}}});
    setHeartbeatCookies({"a=1; Path=/"});
    signIn.actor.onLogin(m_url, QStringLiteral("1"), QStringLiteral("x"));
    QCOMPARE(text(signIn.published().cookies), QStringLiteral("a=1; domain=127.0.0.1; path=/"));
}

void TestLoginActor::cookieTextHoldsAttributesAndCommas()
{
    setHeartbeatCookies({"s=1; Path=/; HttpOnly; Expires=Wed, 09 Jun 2100 10:18:14 GMT"});
    SignIn signIn;
    login(signIn);
    signIn.actor.onLogin(m_url, QStringLiteral("1"), QStringLiteral("x"));
    QCOMPARE(
        text(signIn.published().cookies),
        QStringLiteral("s=1; HttpOnly; expires=Wed, 09-Jun-2100 10:18:14 GMT; domain=127.0.0.1; path=/"));
}

void TestLoginActor::cookieTextMayHoldAnyCharacter()
{
    setHeartbeatCookies({"s=\xE6\xA1\xA5; Path=/"});
    SignIn signIn;
    login(signIn);
    signIn.actor.onLogin(m_url, QStringLiteral("1"), QStringLiteral("x"));
    QCOMPARE(text(signIn.published().cookies), QStringLiteral("s=桥; domain=127.0.0.1; path=/"));
}

//! Names and ids pass unchanged, whatever characters they contain.
void TestLoginActor::sessionIsJsonText()
{
    SignIn signIn;
    login(signIn);
    const QString name = QStringLiteral("企业 \"A\" \\ \U0001F3D7");
    signIn.actor.onLogin(m_url, QStringLiteral("not a number"), name);
    const NelvoSDK::LoginSession session = signIn.published();
    QCOMPARE(text(session.epName), name);
    QCOMPARE(text(session.extra.at(L"epId")), QStringLiteral("not a number"));
}

//! The object contains even the empty texts. The published record does not distinguish empty from missing
//! texts.
void TestLoginActor::sessionObjectHasItsSevenTexts()
{
    SignIn signIn;
    login(signIn);
    const QJsonObject& kept = signIn.actor.m_session;
    QVERIFY(kept.isEmpty());
    m_services.setReply("GET", TokenPath, HttpReply{200, "text/plain", {}, {}});
    const QJsonObject expected{{"serverAddr", m_services.editorUrl()},
                               {"sdkAddr", m_services.editorUrl()},
                               {"epId", ""},
                               {"epName", ""},
                               {"token", ""},
                               {"cookies", ""},
                               {"iotToken", ""}};

    // The service sets its cookies in the first call only.
    signIn.actor.onLogin(m_url, {}, {});
    const QString cookies = kept[QStringLiteral("cookies")].toString();
    QVERIFY(cookies.startsWith(QStringLiteral("EDITORSESSION=")));
    QCOMPARE(text(signIn.published().cookies), cookies);
    signIn.actor.onLogin(m_url, {}, {});
    QCOMPARE(kept, expected);

    m_services.addFault({Fault::Status, HeartbeatPath, {}, 500, false});
    signIn.actor.onLogin(m_url, QStringLiteral("1"), QStringLiteral("x"));
    QCOMPARE(kept, expected);
}

void TestLoginActor::sessionStaysUntilTheNextOne()
{
    SignIn signIn;
    login(signIn);
    signIn.actor.onLogin(m_url, QStringLiteral("1"), QStringLiteral("x"));
    const QJsonObject filled = signIn.actor.m_session;
    QCOMPARE(text(signIn.published().sdkAddr), m_services.editorUrl());
    QCOMPARE(signIn.actor.m_session, filled);
    QCOMPARE(login(signIn, QStringLiteral("zhangwei")), QString());
    QCOMPARE(signIn.actor.m_session, filled);
    QCOMPARE(text(signIn.published().sdkAddr), m_services.editorUrl());
}

void TestLoginActor::showHomeWithoutOnLogin()
{
    SignIn signIn;
    const NelvoSDK::LoginSession session = signIn.published();
    QCOMPARE(signIn.observer.sessions.size(), 1);
    QVERIFY(session.token.empty() && session.cookies.empty() && session.serverAddr.empty() &&
            session.sdkAddr.empty() && session.epName.empty() && session.appVer.empty() &&
            session.iotToken.empty());
    QVERIFY(session.loggedIn);
    QCOMPARE(session.extra.size(), std::size_t(2));
    QVERIFY(session.extra.at(L"epId").empty() && session.extra.at(L"epName").empty());
}

void TestLoginActor::showHomeClosesTheWindow()
{
    QGuiApplication::setQuitOnLastWindowClosed(true);
    SignIn signIn;
    signIn.view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&signIn.view));
    // The order: quitOnLastWindowClosed is switched off, the window closes, the observers are called.
    bool quitsAtClose = true;
    connect(&signIn.view, &QWindow::visibleChanged, this,
            [&quitsAtClose] { quitsAtClose = QGuiApplication::quitOnLastWindowClosed(); });
    bool wasVisible = true;
    signIn.observer.whenSucceeded = [&] { wasVisible = signIn.view.isVisible(); };
    signIn.actor.onShowHome();
    QVERIFY(!quitsAtClose);
    QVERIFY(!wasVisible);
    QVERIFY(!signIn.view.isVisible());
    QVERIFY(!QGuiApplication::quitOnLastWindowClosed());
}

void TestLoginActor::observersShareOneCopy()
{
    class Address final : public NelvoSDK::ILoginObserver
    {
    public:
        void OnLoginSucceeded(const NelvoSDK::LoginSession& session) override { seen = &session; }
        void OnLoginFailed() override {}
        const NelvoSDK::LoginSession* seen = nullptr;
    };
    Address first;
    Address second;
    SignIn signIn;
    signIn.actor.Attach(&first);
    signIn.actor.Attach(&second);
    signIn.actor.onShowHome();
    QVERIFY(first.seen);
    QCOMPARE(first.seen, second.seen);
}

//! A page must not be replaced while a call from it is running.
void TestLoginActor::showLoginDuringACallWaitsForItsEnd()
{
    class Impatient final : public NelvoSDK::ILoginObserver
    {
    public:
        explicit Impatient(SignIn& signIn) : m_signIn(signIn) {}
        void OnLoginSucceeded(const NelvoSDK::LoginSession&) override { m_signIn.actor.ShowLogin(); }
        void OnLoginFailed() override { m_signIn.actor.ShowLogin(); }

    private:
        SignIn& m_signIn;
    };
    m_services.setReply("GET", ListPath, HttpReply{});
    SignIn signIn;
    Impatient observer(signIn);
    signIn.actor.Attach(&observer);
    MessageLog log;
    QVERIFY(!login(signIn).isEmpty());
    QVERIFY(signIn.view.source().isEmpty());
    QTRY_VERIFY(!signIn.view.source().isEmpty());

    signIn.view.setSource({});
    signIn.actor.onShowHome();
    QVERIFY(signIn.view.source().isEmpty());
    QTRY_VERIFY(!signIn.view.source().isEmpty());
    QVERIFY(signIn.view.isVisible());
}

void TestLoginActor::resetCacheKeepsThePassword()
{
    const ApplicationFile cache(QStringLiteral("loginchache.json"));
    SignIn signIn;
    signIn.actor.onResetCache(QStringLiteral("lina"), QStringLiteral("123456"), m_url, QString(), true);
    QVERIFY(cache.content().contains("\"passwd\": \"MTIzNDU2\""));
}

void TestLoginActor::resetCacheDropsThePassword()
{
    const ApplicationFile cache(QStringLiteral("loginchache.json"));
    SignIn signIn;
    signIn.actor.onResetCache(QStringLiteral("lina"), QStringLiteral("123456"), m_url, QString(), true);
    signIn.actor.onResetCache(QStringLiteral("lina"), QStringLiteral("123456"), QStringLiteral("http://b"),
                              QString(), false);
    QVERIFY(cache.content().contains("\"passwd\": \"\""));
    QVERIFY(cache.content().contains(m_url.toLatin1()));
}

void TestLoginActor::logoutGoesOutAtQuit()
{
    SignIn signIn;
    login(signIn);
    m_services.log().clear();
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();
    QCOMPARE(targets(), QByteArrayList{"GET /rs/casLogin/logout"});
    QVERIFY(m_services.log().requests().constFirst().header("Cookie").contains("CASTGC="));
}

//! A quit can be cancelled. The next quit then signs out again.
void TestLoginActor::logoutLeavesJarAndAddress()
{
    SignIn signIn;
    login(signIn);
    const auto logoutPath = QStringLiteral("/rs/casLogin/logout");
    m_services.setReply("GET", logoutPath, {});
    const QList<QNetworkCookie> cookies = sharedCookieJar()->allCookies();
    QVERIFY(!cookies.isEmpty());
    m_services.log().clear();
    for (int quits = 0; quits < 2; ++quits) {
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        QCoreApplication::exec();
        QCOMPARE(sharedCookieJar()->allCookies(), cookies);
    }
    const QByteArray logout = "GET " + logoutPath.toLatin1();
    QCOMPARE(targets(), (QByteArrayList{logout, logout}));
}

void TestLoginActor::logoutWithoutSignInIsLogged()
{
    SignIn signIn;
    MessageLog log;
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();
    QVERIFY(m_services.log().requests().isEmpty());
    QCOMPARE(log.warnings(), QStringList{QStringLiteral("Protocol \"\" is unknown")});
}

QTEST_MAIN(TestLoginActor)
#include "test_loginactor.moc"
