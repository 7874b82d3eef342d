#include "login/loginmgr.h"

#include "tests/support/applicationfile.h"
#include "tests/support/messagelog.h"

#include <QGuiApplication>
#include <QJSValue>
#include <QJsonArray>
#include <QJsonObject>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QtTest>

using NelvoPlugin::CLoginMgr;
using TestSupport::ApplicationFile;
using TestSupport::MessageLog;

class TestLoginMgr : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void contextIsKeptForTheHost();
    void preparedWindowIsFramelessAndHidden();
    void pagesFindTheirContext();
    void startShowsTheWindow();
    void windowShowsBeforeItGetsTheUsers();
    void homeKeepsTheApplicationFromThenOn();
    void pagesLoadWithoutAWarning();
    void withoutCacheTheUserListIsEmpty();
    void cachedUsersReachThePagesWithClearPasswords();
    void cacheFromElsewhereIsQuiet_data();
    void cacheFromElsewhereIsQuiet();
    void showLoginAgainReadsTheLatestCache();
    void quitInAPageEndsTheApplication();
    void destructionWithAShownWindowIsQuiet();

private:
    //! The manager's window; null unless it is the only window of the program.
    QQuickView* view() const;
    QJsonArray userInfos() const;

    std::unique_ptr<ApplicationFile> m_cache;
    std::unique_ptr<ApplicationFile> m_defaultServer;
    std::unique_ptr<ApplicationFile> m_installedVersion;
};

void TestLoginMgr::init()
{
    m_cache = std::make_unique<ApplicationFile>(QStringLiteral("loginchache.json"));
    m_defaultServer = std::make_unique<ApplicationFile>(QStringLiteral("defaultServerAddress.json"));
    m_defaultServer->write(R"({"defaultServer": "http://default:8080"})");
    m_installedVersion = std::make_unique<ApplicationFile>(QStringLiteral("updateConfig.json"));
    m_installedVersion->write(R"({"version": "1.0.0"})");
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

void TestLoginMgr::cleanup()
{
    m_cache.reset();
    m_defaultServer.reset();
    m_installedVersion.reset();
}

QQuickView* TestLoginMgr::view() const
{
    const QWindowList windows = QGuiApplication::topLevelWindows();
    return windows.size() == 1 ? qobject_cast<QQuickView*>(windows.constFirst()) : nullptr;
}

QJsonArray TestLoginMgr::userInfos() const
{
    const QVariant infos = view()->rootObject()->property("userInfos").value<QJSValue>().toVariant();
    return QJsonArray::fromVariantList(infos.toList());
}

void TestLoginMgr::contextIsKeptForTheHost()
{
    CLoginMgr manager;
    QVERIFY(!manager.GetContext());
    manager.SetContext(this);
    QCOMPARE(manager.GetContext(), static_cast<void*>(this));
}

void TestLoginMgr::preparedWindowIsFramelessAndHidden()
{
    const Qt::WindowFlags plain = QQuickView().flags();
    CLoginMgr manager;
    QVERIFY(view());
    QCOMPARE(view()->flags(), plain | Qt::FramelessWindowHint);
    QCOMPARE(view()->resizeMode(), QQuickView::SizeViewToRootObject);
    QVERIFY(view()->source().isEmpty());
    QVERIFY(!view()->isVisible());
    QVERIFY(!view()->parent());
}

void TestLoginMgr::pagesFindTheirContext()
{
    CLoginMgr manager;
    QQmlContext* context = view()->rootContext();
    QCOMPARE(context->contextProperty(QStringLiteral("view")).value<QObject*>(), view());
    QVERIFY(context->contextProperty(QStringLiteral("loginCtrl")).value<QObject*>());
    QCOMPARE(context->contextProperty(QStringLiteral("defaultUrl")),
             QVariant(QStringLiteral("http://default:8080")));
    const auto* updater = context->contextProperty(QStringLiteral("updater")).value<QObject*>();
    QVERIFY(updater);
    QCOMPARE(updater->property("localVersion"), QVariant(QStringLiteral("1.0.0")));

    QQmlComponent component(view()->engine());
    component.setData("import PercentTools 1.0\nPercentTools { property string text: toPercentString(' ') }",
                      {});
    const std::unique_ptr<QObject> tools(component.create());
    QVERIFY2(tools, qPrintable(component.errorString()));
    QCOMPARE(tools->property("text"), QVariant(QStringLiteral("%20")));
}

void TestLoginMgr::startShowsTheWindow()
{
    CLoginMgr manager;
    manager.Start();
    QCOMPARE(view()->source(), QUrl(QStringLiteral("qrc:/NelvoPlugin/qmls/Main.qml")));
    QVERIFY(QTest::qWaitForWindowExposed(view()));
    QCOMPARE(view()->size(), QSize(340, 642));
}

void TestLoginMgr::windowShowsBeforeItGetsTheUsers()
{
    m_cache->write(R"([{"user": "lina"}])");
    CLoginMgr manager;
    int usersWhenShown = -1;
    connect(view(), &QWindow::visibleChanged, this, [this, &usersWhenShown](bool visible) {
        if (visible)
            usersWhenShown = userInfos().size();
    });
    manager.Start();
    QCOMPARE(usersWhenShown, 0);
    QCOMPARE(userInfos().size(), 1);
}

//! Until the first onShowHome, the application quits with its last window, which is Qt's default. After
//! onShowHome it does not, even if ShowLogin shows the window again.
void TestLoginMgr::homeKeepsTheApplicationFromThenOn()
{
    QGuiApplication::setQuitOnLastWindowClosed(true);
    CLoginMgr manager;
    manager.Start();
    QVERIFY(QGuiApplication::quitOnLastWindowClosed());
    auto* actor = view()->rootContext()->contextProperty(QStringLiteral("loginCtrl")).value<QObject*>();
    QVERIFY(QMetaObject::invokeMethod(actor, "onShowHome"));
    manager.GetLoginActor()->ShowLogin();
    QVERIFY(view()->isVisible());
    QVERIFY(!QGuiApplication::quitOnLastWindowClosed());
}

void TestLoginMgr::pagesLoadWithoutAWarning()
{
    MessageLog log;
    CLoginMgr manager;
    manager.Start();
    QVERIFY(QTest::qWaitForWindowExposed(view()));
    QVERIFY2(log.warnings().isEmpty(), qPrintable(log.warnings().join(QLatin1Char('\n'))));
}

void TestLoginMgr::withoutCacheTheUserListIsEmpty()
{
    CLoginMgr manager;
    manager.Start();
    QVERIFY(view()->rootObject()->property("userInfos").value<QJSValue>().isArray());
    QVERIFY(userInfos().isEmpty());
    const auto* address = view()->rootObject()->findChild<QQuickItem*>(QStringLiteral("addressBox"));
    QVERIFY(address);
    QCOMPARE(address->property("outText").toString(), QStringLiteral("http://default:8080"));
}

void TestLoginMgr::cachedUsersReachThePagesWithClearPasswords()
{
    m_cache->write(R"([{"user": "lina", "passwd": "MTIzNDU2", "cimUrlList": ["http://a"], "pdsUrlList": [""]},
                       {"user": "zhang", "passwd": "", "cimUrlList": [], "pdsUrlList": []}])");
    CLoginMgr manager;
    manager.Start();
    QCOMPARE(userInfos().size(), 2);
    QCOMPARE(userInfos().at(0).toObject(),
             (QJsonObject{{QStringLiteral("user"), QStringLiteral("lina")},
                          {QStringLiteral("passwd"), QStringLiteral("123456")},
                          {QStringLiteral("cimUrlList"), QJsonArray{QStringLiteral("http://a")}},
                          {QStringLiteral("pdsUrlList"), QJsonArray{QString()}}}));
    const auto* password = view()->rootObject()->findChild<QQuickItem*>(QStringLiteral("passwordField"));
    QVERIFY(password);
    QTRY_COMPARE(password->property("text").toString(), QStringLiteral("123456"));
}

void TestLoginMgr::cacheFromElsewhereIsQuiet_data()
{
    QTest::addColumn<QByteArray>("cache");
    QTest::addColumn<QString>("firstUser");
    QTest::newRow("no password") << QByteArray(R"([{"user": "lina"}])") << "lina";
    QTest::newRow("no user") << QByteArray(R"([5, {"user": "lina"}])") << "";
}

void TestLoginMgr::cacheFromElsewhereIsQuiet()
{
    QFETCH(QByteArray, cache);
    QFETCH(QString, firstUser);
    m_cache->write(cache);
    MessageLog log;
    CLoginMgr manager;
    manager.Start();
    const auto* user = view()->rootObject()->findChild<QQuickItem*>(QStringLiteral("userNameBox"));
    QCOMPARE(user->property("outText").toString(), firstUser);
    QCOMPARE(view()->rootObject()->property("userList").value<QJSValue>().toVariant().toList().constLast(),
             QVariant("lina"));
    QVERIFY2(log.warnings().isEmpty(), qPrintable(log.warnings().join(QLatin1Char('\n'))));
}

void TestLoginMgr::showLoginAgainReadsTheLatestCache()
{
    CLoginMgr manager;
    manager.GetLoginActor()->ShowLogin();
    QVERIFY(userInfos().isEmpty());
    const QUrl source = view()->source();
    m_cache->write(R"([{"user": "late"}])");
    manager.GetLoginActor()->ShowLogin();
    QCOMPARE(view()->source(), source);
    QCOMPARE(userInfos().size(), 1);
}

void TestLoginMgr::quitInAPageEndsTheApplication()
{
    CLoginMgr manager;
    QQmlComponent component(view()->engine());
    component.setData("import QtQml 2.15\nQtObject { function leave() { Qt.quit() } }", {});
    const std::unique_ptr<QObject> page(component.create());
    QVERIFY(page);
    QTimer::singleShot(0, page.get(), [&page] { QMetaObject::invokeMethod(page.get(), "leave"); });
    MessageLog log;
    QCOMPARE(QCoreApplication::exec(), 0);
}

void TestLoginMgr::destructionWithAShownWindowIsQuiet()
{
    MessageLog log;
    {
        CLoginMgr manager;
        manager.Start();
        QVERIFY(QTest::qWaitForWindowExposed(view()));
    }
    QVERIFY(QGuiApplication::topLevelWindows().isEmpty());
    QVERIFY2(log.warnings().isEmpty(), qPrintable(log.warnings().join(QLatin1Char('\n'))));
}

QTEST_MAIN(TestLoginMgr)
#include "test_loginmgr.moc"
