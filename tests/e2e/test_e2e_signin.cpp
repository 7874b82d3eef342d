#include "tests/e2e/loginform.h"
#include "tests/e2e/pluginhost.h"
#include "tests/support/accounts.h"
#include "tests/support/messagelog.h"
#include "tests/support/startedservices.h"
#include "userinput/userinput.h"

#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using NelvoDevkit::Fault;
using TestSupport::passwordOf;

//! A user signs in through the window, with real HTTP.
class TestE2eSignIn : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void oneEnterprisePassesWithoutAClick();
    void manyEnterprisesWaitForTheChoice();
    void withoutEnterpriseTheUserStays();
    void latin1Password();
    void chineseUserName();
    void returnSignsInFromEveryField_data();
    void returnSignsInFromEveryField();

    void wrongPasswordIsShownAndMayBeCorrected();
    void unreachableServiceIsShown();
    void addressWithoutSchemeSendsNothing();
    void secondClickWhileWaitingStartsNoSecondLogin();
    void windowStaysAliveWhileTheServiceStalls();

    void keptPasswordIsOfferedNextTime();
    void forgottenPasswordIsNotOffered();
    void signingInAgainInTheSameProcess();
    void closeButtonEndsTheApplication();
    void showLoginFromWithinTheObserver();
    void showLoginWhileTheServiceStalls();
    void shutdownOnTheListPageIsQuiet();

private:
    E2e::PluginHost& host() { return *m_host; }
    void start();
    void signIn(const QString& user);
    int count(const QByteArray& method, const QByteArray& path) const;

    TestSupport::StartedServices m_services;
    std::unique_ptr<E2e::PluginHost> m_host;
};

void TestE2eSignIn::init()
{
    m_services.reset();
    m_services.forgetSessions();
    m_host = std::make_unique<E2e::PluginHost>(m_services.signInUrl());
    start();
}

void TestE2eSignIn::cleanup()
{
    m_host.reset();
}

void TestE2eSignIn::start()
{
    E2e::plugin()->GetLoginMgr()->Start();
    QVERIFY(UserInput::activate(host().window()));
}

void TestE2eSignIn::signIn(const QString& user)
{
    E2e::submitForm(host().window(), user, passwordOf(user), m_services.signInUrl());
}

int TestE2eSignIn::count(const QByteArray& method, const QByteArray& path) const
{
    int found = 0;
    const QVector<NelvoDevkit::LoggedRequest> requests = m_services.log().requests();
    for (const NelvoDevkit::LoggedRequest& request : requests)
        found += (request.method == method && request.path() == path) ? 1 : 0;
    return found;
}

void TestE2eSignIn::oneEnterprisePassesWithoutAClick()
{
    QGuiApplication::setQuitOnLastWindowClosed(true); // as in a host that has set nothing
    const TestSupport::MessageLog log;
    signIn(QStringLiteral("zhangwei"));
    QTRY_COMPARE(host().observer.sessions.size(), 1);
    QCOMPARE(log.categories(QStringLiteral(" login success....")), QStringList{"qml"});
    const NelvoSDK::LoginSession session = host().observer.sessions.constFirst();
    QVERIFY(session.loggedIn);
    QCOMPARE(QString::fromStdWString(session.sdkAddr), m_services.editorUrl());
    QCOMPARE(QString::fromStdWString(session.serverAddr), m_services.editorUrl() + QStringLiteral("/proxy"));
    QCOMPARE(QString::fromStdWString(session.epName), QStringLiteral("远景建筑设计研究院"));
    QVERIFY(session.extra.at(L"epId") == L"1001");
    QVERIFY(session.extra.at(L"epName") == session.epName);
    QVERIFY(!session.iotToken.empty());
    QVERIFY(session.cookies.find(L"EDITORSESSION=") != std::wstring::npos);
    QVERIFY(!host().window()->isVisible());
    QVERIFY(!QGuiApplication::quitOnLastWindowClosed());
    QCOMPARE(host().observer.failures, 0);
}

void TestE2eSignIn::manyEnterprisesWaitForTheChoice()
{
    signIn(QStringLiteral("lina"));
    QTRY_VERIFY(UserInput::findItem(host().window(), QStringLiteral("applistComp")));
    const auto thirdRow = [this] {
        return UserInput::rowAt(UserInput::findItem(host().window(), QStringLiteral("companyList")), 2);
    };
    QTRY_VERIFY(thirdRow());

    // Nothing is chosen yet, so the button has no effect.
    UserInput::click(UserInput::findItem(host().window(), QStringLiteral("confirmButton")));
    QVERIFY(UserInput::findItem(host().window(), QStringLiteral("applistComp")));
    QCOMPARE(count("POST", "/rs/casLogin/casLogin"), 0);

    UserInput::click(thirdRow());
    UserInput::click(UserInput::findItem(host().window(), QStringLiteral("confirmButton")));
    QTRY_VERIFY(UserInput::findItem(host().window(), QStringLiteral("validComp")));
    QTRY_COMPARE(host().observer.sessions.size(), 1);
    const NelvoSDK::LoginSession session = host().observer.sessions.constFirst();
    QVERIFY(session.extra.at(L"epId") == L"1003");
    QCOMPARE(QString::fromStdWString(session.epName), QStringLiteral("江南水利工程局"));
}

void TestE2eSignIn::withoutEnterpriseTheUserStays()
{
    signIn(QStringLiteral("wangfang"));
    QTRY_VERIFY(UserInput::findItem(host().window(), QStringLiteral("confirmButton")));
    UserInput::click(UserInput::findItem(host().window(), QStringLiteral("confirmButton")));
    QCoreApplication::processEvents();
    QVERIFY(UserInput::findItem(host().window(), QStringLiteral("applistComp")));
    QVERIFY(UserInput::findItems(host().window(), QStringLiteral("companyRow")).isEmpty());
    QCOMPARE(count("POST", "/rs/casLogin/casLogin"), 0);
}

void TestE2eSignIn::latin1Password()
{
    signIn(QStringLiteral("müller"));
    QTRY_COMPARE(host().observer.sessions.size(), 1);
    QVERIFY(!host().observer.sessions.constFirst().sdkAddr.empty());
}

void TestE2eSignIn::chineseUserName()
{
    signIn(QStringLiteral("陈晓明"));
    QTRY_COMPARE(UserInput::findItems(host().window(), QStringLiteral("companyRow")).size(), 2);
}

void TestE2eSignIn::returnSignsInFromEveryField_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<int>("key");
    for (const char* field : {"userNameBox", "passwordField", "addressBox", "keepPassword"}) {
        QTest::addRow("Return in %s", field) << QString::fromLatin1(field) << int(Qt::Key_Return);
        QTest::addRow("Enter in %s", field) << QString::fromLatin1(field) << int(Qt::Key_Enter);
    }
}

void TestE2eSignIn::returnSignsInFromEveryField()
{
    QFETCH(QString, field);
    QFETCH(int, key);
    QQuickView* window = host().window();
    UserInput::fillField(window, QStringLiteral("userNameBox"), QStringLiteral("lina"));
    UserInput::fillField(window, QStringLiteral("passwordField"), passwordOf(QStringLiteral("lina")));
    UserInput::findItem(window, field)->forceActiveFocus();
    QTest::keyClick(window, static_cast<Qt::Key>(key));
    QTRY_VERIFY(UserInput::findItem(window, QStringLiteral("applistComp")));
    QCOMPARE(count("GET", "/login"), 1);
}

void TestE2eSignIn::wrongPasswordIsShownAndMayBeCorrected()
{
    E2e::submitForm(host().window(), QStringLiteral("zhangwei"), QStringLiteral("wrong"),
                    m_services.signInUrl());
    QTRY_COMPARE(E2e::shownError(host().window()), QStringLiteral("read compList failed"));
    QCOMPARE(host().observer.failures, 1);
    QVERIFY(!host().cache.exists());

    signIn(QStringLiteral("zhangwei"));
    QTRY_COMPARE(host().observer.sessions.size(), 1);
}

void TestE2eSignIn::unreachableServiceIsShown()
{
    m_services.addFault({Fault::Refuse, {}, {}, 0, false});
    signIn(QStringLiteral("zhangwei"));
    QTRY_COMPARE(E2e::shownError(host().window()), QStringLiteral("Connection refused"));
    QCOMPARE(host().observer.failures, 1);
    m_services.clearFaults();
    signIn(QStringLiteral("zhangwei"));
    QTRY_COMPARE(host().observer.sessions.size(), 1);
}

void TestE2eSignIn::addressWithoutSchemeSendsNothing()
{
    E2e::submitForm(host().window(), QStringLiteral("lina"), QStringLiteral("x"),
                    QStringLiteral("127.0.0.1"));
    QTRY_COMPARE(E2e::shownError(host().window()), QStringLiteral("Editor 地址错误！"));
    QVERIFY(m_services.log().requests().isEmpty());
    QCOMPARE(host().observer.failures, 0);
}

void TestE2eSignIn::secondClickWhileWaitingStartsNoSecondLogin()
{
    m_services.addFault({Fault::Stall, QStringLiteral("/login"), "GET", 0, false});
    int clicks = 0;
    QTimer again;
    connect(&again, &QTimer::timeout, this, [&] {
        if (count("GET", "/login") == 0)
            return;
        UserInput::click(UserInput::findItem(host().window(), QStringLiteral("loginButton")));
        QTest::keyClick(host().window(), Qt::Key_Return);
        if (++clicks == 3) {
            again.stop();
            m_services.clearFaults();
        }
    });
    again.start(5);
    signIn(QStringLiteral("lina"));
    QTRY_VERIFY(UserInput::findItem(host().window(), QStringLiteral("applistComp")));
    QCOMPARE(clicks, 3);
    QCOMPARE(count("GET", "/login"), 1);
}

void TestE2eSignIn::windowStaysAliveWhileTheServiceStalls()
{
    m_services.addFault({Fault::Stall, QStringLiteral("/rs/casLogin/serverUrl"), {}, 0, false});
    int frames = 0;
    int framesWhileStalled = 0;
    connect(host().window(), &QQuickWindow::frameSwapped, this, [&frames] { ++frames; });
    QTimer watch;
    connect(&watch, &QTimer::timeout, this, [&] {
        if (count("GET", "/rs/casLogin/serverUrl") == 0)
            return;
        host().window()->update();
        if (frames == 0 || ++framesWhileStalled < 5)
            return;
        watch.stop();
        frames = 0;
        m_services.clearFaults();
    });
    watch.start(20);
    signIn(QStringLiteral("zhangwei"));
    QTRY_COMPARE(host().observer.sessions.size(), 1);
    QCOMPARE(framesWhileStalled, 5);
}

void TestE2eSignIn::keptPasswordIsOfferedNextTime()
{
    UserInput::fillField(host().window(), QStringLiteral("userNameBox"), QStringLiteral("zhangwei"));
    UserInput::fillField(host().window(), QStringLiteral("passwordField"),
                         passwordOf(QStringLiteral("zhangwei")));
    UserInput::click(UserInput::findItem(host().window(), QStringLiteral("keepPassword")));
    UserInput::click(UserInput::findItem(host().window(), QStringLiteral("loginButton")));
    QTRY_COMPARE(host().observer.sessions.size(), 1);

    const QJsonObject entry = QJsonDocument::fromJson(host().cache.content()).array().at(0).toObject();
    QCOMPARE(entry, (QJsonObject{{"user", "zhangwei"},
                                 {"passwd", "MTIzNDU2"},
                                 {"cimUrlList", QJsonArray{m_services.signInUrl()}},
                                 {"pdsUrlList", QJsonArray{""}}}));

    host().actor()->ShowLogin();
    QVERIFY(UserInput::activate(host().window()));
    QTRY_COMPARE(
        UserInput::findItem(host().window(), QStringLiteral("userNameBox"))->property("outText").toString(),
        QStringLiteral("zhangwei"));
    QCOMPARE(
        UserInput::findItem(host().window(), QStringLiteral("passwordField"))->property("text").toString(),
        QStringLiteral("123456"));
    QVERIFY(
        UserInput::findItem(host().window(), QStringLiteral("keepPassword"))->property("checked").toBool());
    UserInput::click(UserInput::findItem(host().window(), QStringLiteral("loginButton")));
    QTRY_COMPARE(host().observer.sessions.size(), 2);
}

void TestE2eSignIn::forgottenPasswordIsNotOffered()
{
    signIn(QStringLiteral("zhangwei"));
    QTRY_COMPARE(host().observer.sessions.size(), 1);
    QVERIFY(host().cache.content().contains("\"passwd\": \"\""));
    host().actor()->ShowLogin();
    QTRY_COMPARE(
        UserInput::findItem(host().window(), QStringLiteral("userNameBox"))->property("outText").toString(),
        QStringLiteral("zhangwei"));
    QVERIFY(UserInput::findItem(host().window(), QStringLiteral("passwordField"))
                ->property("text")
                .toString()
                .isEmpty());
    QVERIFY(
        !UserInput::findItem(host().window(), QStringLiteral("keepPassword"))->property("checked").toBool());
}

void TestE2eSignIn::signingInAgainInTheSameProcess()
{
    signIn(QStringLiteral("zhangwei"));
    QTRY_COMPARE(host().observer.sessions.size(), 1);
    host().actor()->ShowLogin();
    QVERIFY(UserInput::activate(host().window()));
    signIn(QStringLiteral("müller"));
    QTRY_COMPARE(host().observer.sessions.size(), 2);
    QCOMPARE(QString::fromStdWString(host().observer.sessions.constLast().epName),
             QStringLiteral("东方轨道交通有限公司"));
    // The editor service knows this client already and sets no new cookie.
    QVERIFY(host().observer.sessions.constLast().cookies.empty());
}

void TestE2eSignIn::closeButtonEndsTheApplication()
{
    QTimer::singleShot(0, this, [this] {
        UserInput::click(UserInput::findItem(host().window(), QStringLiteral("closeButton")));
    });
    TestSupport::MessageLog log; // the logout without a sign-in warns
    QCOMPARE(QCoreApplication::exec(), 0);
    QVERIFY(!host().window()->isVisible());
    QCOMPARE(log.warnings(), QStringList{QStringLiteral("Protocol \"\" is unknown")});
}

//! A host may call ShowLogin immediately, to let the user choose another enterprise.
void TestE2eSignIn::showLoginFromWithinTheObserver()
{
    host().observer.whenSucceeded = [this] { host().actor()->ShowLogin(); };
    signIn(QStringLiteral("zhangwei"));
    QTRY_COMPARE(host().observer.sessions.size(), 1);
    QTRY_VERIFY(UserInput::findItem(host().window(), QStringLiteral("loginComp")));
    QVERIFY(host().window()->isVisible());
}

void TestE2eSignIn::showLoginWhileTheServiceStalls()
{
    m_services.addFault({Fault::Stall, QStringLiteral("/rs/casLogin/serverUrl"), {}, 0, false});
    QTimer watch;
    connect(&watch, &QTimer::timeout, this, [&] {
        if (count("GET", "/rs/casLogin/serverUrl") == 0)
            return;
        watch.stop();
        host().actor()->ShowLogin();
        m_services.clearFaults();
    });
    watch.start(5);
    signIn(QStringLiteral("zhangwei"));
    QTRY_VERIFY(!watch.isActive());
    QTRY_VERIFY(UserInput::findItem(host().window(), QStringLiteral("loginComp")));
    signIn(QStringLiteral("zhangwei"));
    QTRY_COMPARE(host().observer.sessions.size(), 1);
}

void TestE2eSignIn::shutdownOnTheListPageIsQuiet()
{
    signIn(QStringLiteral("lina"));
    QTRY_VERIFY(UserInput::findItem(host().window(), QStringLiteral("applistComp")));
    TestSupport::MessageLog log;
    m_host.reset();
    QVERIFY2(log.warnings().isEmpty(), qPrintable(log.warnings().join(QLatin1Char('\n'))));
}

E2E_MAIN(TestE2eSignIn)
#include "test_e2e_signin.moc"
