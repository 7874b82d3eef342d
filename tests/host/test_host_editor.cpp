#include "host/editor.h"

#include "pluginstandin.h"

#include <QColor>
#include <QGuiApplication>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QWebChannel>
#include <QtTest>

using NelvoDevkit::DeviceList;
using NelvoDevkit::Editor;
using NelvoDevkit::LogEntry;
using NelvoDevkit::LogModel;

class TestHostEditor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void orderOfCalls();
    void contextHandsOverTheWebChannel();
    void pagesFindTheirObjects();
    void modelsFollowTheSession();
    void plugInOutlivesTheDesks();
    void noSessionAtFirst();
    void sessionAfterSuccess();
    void everyFieldHasItsRow();
    void failureLeavesTheSession();
    void anotherSessionTakesItsPlace();
    void signInAgainKeepsTheSession();
    void signOutForgetsTheSession();
    void everyCallIsLogged();
    void projectsFollowTheSession();
    void earlierCookiesHoldOn();
    void noticeOfThePushOut();
    void dismissedNoticeStaysAway();
    void pushedOutClientHasNoGoodCookies();
};

namespace {

NelvoSDK::LoginSession fullSession()
{
    NelvoSDK::LoginSession session;
    session.token = L"the token";
    session.cookies = L"a=1; path=/,b=2";
    session.serverAddr = L"http://editor/proxy";
    session.sdkAddr = L"http://editor";
    session.epName = L"江南水利工程局";
    session.appVer = L"1.2";
    session.iotToken = L"\"iot\"";
    session.loggedIn = true;
    session.extra = {{L"epId", L"1003"}, {L"epName", L"once more"}, {L"new", L"something"}};
    return session;
}

//! The values of the session's rows by field.
QMap<QString, QString> values(const Editor& editor)
{
    QMap<QString, QString> found;
    for (const QVariant& row : editor.session()) {
        const QVariantMap map = row.toMap();
        if (map.value(QStringLiteral("label")).toString().isEmpty())
            qFatal("a row of the session has no label");
        found.insert(map.value(QStringLiteral("field")).toString(),
                     map.value(QStringLiteral("value")).toString());
    }
    return found;
}

} // namespace

void TestHostEditor::orderOfCalls()
{
    PluginStandIn plugin;
    LogModel log;
    {
        Editor editor(plugin, log, nullptr);
        QCOMPARE(plugin.calls,
                 (QStringList{"SetHostContext", "Initialize", "Attach login", "Attach message"}));
        QCOMPARE(editor.pluginVersion(), QStringLiteral("9.8.7"));
        plugin.calls.clear();
        editor.start();
        QCOMPARE(plugin.calls, QStringList("Start"));
        plugin.calls.clear();
    }
    QCOMPARE(plugin.calls,
             (QStringList{"Detach message", "Detach login", "Shutdown", "SetHostContext null"}));
}

void TestHostEditor::contextHandsOverTheWebChannel()
{
    const auto channelOf = [](PluginStandIn& plugin) {
        return static_cast<NelvoSDK::IHostContext*>(plugin.GetHostContext())->GetWebChannel();
    };
    PluginStandIn plugin;
    LogModel log;
    {
        const Editor editor(plugin, log, nullptr);
        QCOMPARE(channelOf(plugin), nullptr);
    }
    QWebChannel channel;
    const Editor editor(plugin, log, &channel);
    QCOMPARE(channelOf(plugin), &channel);
}

//! The QML context contains the objects that the plug-in's page in the component panel uses.
void TestHostEditor::pagesFindTheirObjects()
{
    PluginStandIn plugin;
    LogModel log;
    Editor editor(plugin, log, nullptr);
    QQmlEngine engine;
    editor.publish(engine.rootContext());
    QVERIFY(plugin.models.calls.contains(QStringLiteral("SetQmlContext")));
    DeviceList& devices = *editor.projects()->devices();
    devices.setProject(QStringLiteral("p-1"));
    devices.setData(devices.index(0), QStringLiteral("SN-1"), DeviceList::SerialRole);
    const auto evaluate = [&engine](const QString& expression) {
        QQmlExpression asked(engine.rootContext(), nullptr, expression);
        const QVariant value = asked.evaluate();
        return asked.hasError() ? asked.error().toString() : value.toString();
    };
    editor.component()->select(devices.index(0).data(DeviceList::GuidRole).toString());
    QCOMPARE(evaluate(QStringLiteral("compCardData.deviceID")), QStringLiteral("SN-1"));
    QCOMPARE(evaluate(QStringLiteral("appPath")), QCoreApplication::applicationDirPath());
    QVERIFY(QColor(evaluate(QStringLiteral("globalEditColor.eGlobalBackGround"))).isValid());
    QVERIFY(QColor(evaluate(QStringLiteral("globalEditColor.eGlobalBorderColor"))).isValid());
    evaluate(QStringLiteral("webViewMgr.openWeb(appPath + '/device.html', Qt.rect(0, 0, 368, 440))"));
    QCOMPARE(editor.webView()->url(),
             QCoreApplication::applicationDirPath() + QStringLiteral("/device.html"));
    evaluate(QStringLiteral("componentObject.clearDeviceData(componentObject.currentComp)"));
    QCOMPARE(devices.boundCount(), 0);
}

void TestHostEditor::modelsFollowTheSession()
{
    PluginStandIn plugin;
    LogModel log;
    Editor editor(plugin, log, nullptr);
    const auto count = [&plugin] { return plugin.models.calls.count(QStringLiteral("InitBimData")); };
    plugin.projects.whileBlocking = [&] { QCOMPARE(count(), 0); };
    plugin.loginObserver->OnLoginSucceeded(fullSession());
    QTRY_VERIFY(!editor.projects()->queue()->isBusy());
    QCOMPARE(count(), 1);
    QVERIFY(editor.models()->isReady());

    // A session without an editor service has no organisation tree.
    plugin.projects.whileBlocking = nullptr;
    NelvoSDK::LoginSession session = fullSession();
    session.sdkAddr.clear();
    plugin.loginObserver->OnLoginSucceeded(session);
    QTRY_VERIFY(!editor.projects()->queue()->isBusy());
    QCOMPARE(count(), 1);
}

void TestHostEditor::plugInOutlivesTheDesks()
{
    PluginStandIn plugin;
    LogModel log;
    {
        const Editor editor(plugin, log, nullptr);
        QVERIFY(plugin.models.observer != nullptr);
        plugin.models.calls.clear();
        plugin.onShutdown = [&plugin] { QCOMPARE(plugin.models.calls, QStringList("Detach")); };
    }
    QVERIFY(plugin.models.observer == nullptr);
}

void TestHostEditor::noSessionAtFirst()
{
    PluginStandIn plugin;
    LogModel log;
    const Editor editor(plugin, log, nullptr);
    QVERIFY(!editor.isSignedIn());
    QCOMPARE(editor.enterprise(), QString());
    QVERIFY(editor.session().isEmpty());
}

void TestHostEditor::sessionAfterSuccess()
{
    PluginStandIn plugin;
    LogModel log;
    const Editor editor(plugin, log, nullptr);
    QSignalSpy changed(&editor, &Editor::sessionChanged);
    plugin.loginObserver->OnLoginSucceeded(fullSession());
    QCOMPARE(changed.size(), 1);
    QVERIFY(editor.isSignedIn());
    QCOMPARE(editor.enterprise(), QStringLiteral("江南水利工程局"));
}

void TestHostEditor::everyFieldHasItsRow()
{
    PluginStandIn plugin;
    LogModel log;
    const Editor editor(plugin, log, nullptr);
    plugin.loginObserver->OnLoginSucceeded(fullSession());
    const QMap<QString, QString> expected = {
        {"token", "the token"},
        {"cookies", "a=1; path=/,b=2"},
        {"serverAddr", "http://editor/proxy"},
        {"sdkAddr", "http://editor"},
        {"epName", "江南水利工程局"},
        {"appVer", "1.2"},
        {"iotToken", "\"iot\""},
        {"loggedIn", "true"},
        {"extra[\"epId\"]", "1003"},
        {"extra[\"epName\"]", "once more"},
        {"extra[\"new\"]", "something"},
    };
    QCOMPARE(values(editor), expected);

    plugin.loginObserver->OnLoginSucceeded({});
    QCOMPARE(values(editor).size(), 8);
    QCOMPARE(values(editor).value(QStringLiteral("loggedIn")), QStringLiteral("false"));
}

void TestHostEditor::failureLeavesTheSession()
{
    PluginStandIn plugin;
    LogModel log;
    const Editor editor(plugin, log, nullptr);
    plugin.loginObserver->OnLoginFailed();
    QVERIFY(!editor.isSignedIn());
    plugin.loginObserver->OnLoginSucceeded(fullSession());
    plugin.loginObserver->OnLoginFailed();
    QCOMPARE(editor.enterprise(), QStringLiteral("江南水利工程局"));
}

void TestHostEditor::anotherSessionTakesItsPlace()
{
    PluginStandIn plugin;
    LogModel log;
    const Editor editor(plugin, log, nullptr);
    plugin.loginObserver->OnLoginSucceeded(fullSession());
    NelvoSDK::LoginSession other;
    other.epName = L"another";
    plugin.loginObserver->OnLoginSucceeded(other);
    QCOMPARE(editor.enterprise(), QStringLiteral("another"));
    QCOMPARE(values(editor).value(QStringLiteral("sdkAddr")), QString());
}

void TestHostEditor::signInAgainKeepsTheSession()
{
    PluginStandIn plugin;
    LogModel log;
    Editor editor(plugin, log, nullptr);
    plugin.loginObserver->OnLoginSucceeded(fullSession());
    plugin.calls.clear();
    editor.signInAgain();
    QCOMPARE(plugin.calls, QStringList("ShowLogin"));
    QVERIFY(editor.isSignedIn());
}

void TestHostEditor::signOutForgetsTheSession()
{
    PluginStandIn plugin;
    LogModel log;
    Editor editor(plugin, log, nullptr);
    plugin.loginObserver->OnLoginSucceeded(fullSession());
    QGuiApplication::setQuitOnLastWindowClosed(false); // like the plug-in
    plugin.calls.clear();
    QSignalSpy changed(&editor, &Editor::sessionChanged);
    editor.signOut();
    QCOMPARE(plugin.calls, QStringList("ShowLogin"));
    QCOMPARE(changed.size(), 1);
    QVERIFY(!editor.isSignedIn());
    QVERIFY(editor.session().isEmpty());
    QVERIFY(QGuiApplication::quitOnLastWindowClosed());
}

void TestHostEditor::everyCallIsLogged()
{
    PluginStandIn plugin;
    LogModel log;
    const Editor editor(plugin, log, nullptr);
    static_cast<NelvoSDK::IHostContext*>(plugin.GetHostContext())->GetWebChannel();
    plugin.loginObserver->OnLoginFailed();
    plugin.loginObserver->OnLoginSucceeded(fullSession());
    plugin.messageObserver->OnMessageFirst(QStringLiteral("one"));
    plugin.messageObserver->OnMessageSecond(QStringLiteral("%1"));
    plugin.messageObserver->OnMessageThird({});

    const auto calls = [&log] {
        QStringList texts;
        for (int row = 0; row < log.rowCount(); ++row) {
            if (log.entry(row).kind == LogEntry::Kind::Observer)
                texts.append(log.entry(row).text);
        }
        return texts;
    };
    const QString success = QStringLiteral(
        "ILoginObserver::OnLoginSucceeded: enterprise \"江南水利工程局\", editor service \"http://editor\"");
    QTRY_COMPARE(calls(), (QStringList{"IHostContext::GetWebChannel: none", "ILoginObserver::OnLoginFailed",
                                       success, "IMessageObserver::OnMessageFirst: one",
                                       "IMessageObserver::OnMessageSecond: %1",
                                       "IMessageObserver::OnMessageThird: "}));
}

void TestHostEditor::projectsFollowTheSession()
{
    PluginStandIn plugin;
    LogModel log;
    Editor editor(plugin, log, nullptr);
    plugin.loginObserver->OnLoginSucceeded(fullSession());
    QVERIFY(!plugin.projects.calls.contains(QStringLiteral("ReflushProjOrgInfo")));
    QTRY_VERIFY(!editor.projects()->queue()->isBusy());
    QCOMPARE(plugin.projects.calls.count(QStringLiteral("ReflushProjOrgInfo")), 1);
    QVERIFY(plugin.projects.session.cookies == fullSession().cookies);
    QVERIFY(editor.projects()->isReady());
    editor.signOut();
    QTRY_VERIFY(!editor.projects()->queue()->isBusy());
    QVERIFY(!editor.projects()->isReady());
}

void TestHostEditor::earlierCookiesHoldOn()
{
    PluginStandIn plugin;
    LogModel log;
    const Editor editor(plugin, log, nullptr);
    const auto cookiesAfter = [&](const NelvoSDK::LoginSession& session) {
        plugin.loginObserver->OnLoginSucceeded(session);
        if (!QTest::qWaitFor([&editor] { return !editor.projects()->queue()->isBusy(); }, 30000))
            qFatal("the host's operations time out");
        return QString::fromStdWString(plugin.projects.session.cookies);
    };
    NelvoSDK::LoginSession session = fullSession();
    session.cookies.clear();
    QCOMPARE(cookiesAfter(session), QString());
    session.cookies = L"a=1";
    QCOMPARE(cookiesAfter(session), QStringLiteral("a=1"));
    session.cookies.clear();
    QCOMPARE(cookiesAfter(session), QStringLiteral("a=1"));
    // The rows show the received values.
    QCOMPARE(values(editor).value(QStringLiteral("cookies")), QString());
    session.sdkAddr = L"http://another";
    QCOMPARE(cookiesAfter(session), QString());
}

void TestHostEditor::noticeOfThePushOut()
{
    PluginStandIn plugin;
    LogModel log;
    Editor editor(plugin, log, nullptr);
    QSignalSpy changed(&editor, &Editor::noticeChanged);
    plugin.messageObserver->OnMessageSecond(QStringLiteral("second"));
    plugin.messageObserver->OnMessageThird(QStringLiteral("third"));
    QCOMPARE(editor.notice(), QString());
    plugin.messageObserver->OnMessageFirst(QStringLiteral("pushed out"));
    QCOMPARE(editor.notice(), QStringLiteral("pushed out"));
    QCOMPARE(changed.size(), 1);
    plugin.loginObserver->OnLoginFailed();
    QCOMPARE(editor.notice(), QStringLiteral("pushed out"));
    plugin.loginObserver->OnLoginSucceeded(fullSession());
    QCOMPARE(editor.notice(), QString());
    plugin.messageObserver->OnMessageFirst(QStringLiteral("once more"));
    editor.signOut();
    QCOMPARE(editor.notice(), QString());
}

void TestHostEditor::dismissedNoticeStaysAway()
{
    PluginStandIn plugin;
    LogModel log;
    Editor editor(plugin, log, nullptr);
    plugin.messageObserver->OnMessageFirst(QStringLiteral("pushed out"));
    editor.dismissNotice();
    QCOMPARE(editor.notice(), QString());
    plugin.messageObserver->OnMessageFirst(QStringLiteral("pushed out"));
    QCOMPARE(editor.notice(), QString());
    plugin.loginObserver->OnLoginSucceeded(fullSession());
    plugin.messageObserver->OnMessageFirst(QStringLiteral("pushed out"));
    QCOMPARE(editor.notice(), QStringLiteral("pushed out"));
}

void TestHostEditor::pushedOutClientHasNoGoodCookies()
{
    PluginStandIn plugin;
    LogModel log;
    const Editor editor(plugin, log, nullptr);
    plugin.loginObserver->OnLoginSucceeded(fullSession());
    plugin.messageObserver->OnMessageFirst(QStringLiteral("pushed out"));
    NelvoSDK::LoginSession session = fullSession();
    session.cookies.clear();
    plugin.loginObserver->OnLoginSucceeded(session);
    QTRY_VERIFY(!editor.projects()->queue()->isBusy());
    QVERIFY(plugin.projects.session.cookies.empty());
}

QTEST_MAIN(TestHostEditor)
#include "test_host_editor.moc"
