//! \file
//! \brief Ways in which a process ends.

#include "bench/processmemory.h"
#include "tests/e2e/survival/scenario.h"

#include <NelvoSDK/IPdsMgr.h>
#include <NelvoSDK/IProjectInfoMgr.h>

#include <QGuiApplication>
#include <QQmlContext>
#include <QQmlEngine>
#include <QTcpServer>
#include <QtTest>

#include <cstdlib>
#include <optional>

namespace Survival {

namespace {

using TestSupport::StartedServices;

const auto Nowhere = QStringLiteral("http://127.0.0.1:9");

//! Ends the process from the event loop, with the application and all windows in place.
[[noreturn]] void exitFromEventLoop()
{
    QTimer::singleShot(0, [] { std::exit(Survived); });
    QCoreApplication::exec();
    std::_Exit(EXIT_FAILURE);
}

//! A server that never replies.
QString silentServer()
{
    auto* const server = new QTcpServer(QCoreApplication::instance());
    require(server->listen(QHostAddress::LocalHost), "the silent server listens");
    return QStringLiteral("http://127.0.0.1:%1").arg(server->serverPort());
}

int returnAfterACall(Arguments arguments)
{
    const QGuiApplication application(arguments.count, arguments.values);
    StartedServices services;
    const E2e::PluginHost host(services.signInUrl());
    require(!host.signIn(services.signInUrl(), QStringLiteral("zhangwei")).sdkAddr.empty(), "signed in");
    return Survived;
}

int exitWithTheWindowShown(Arguments arguments)
{
    const QGuiApplication application(arguments.count, arguments.values);
    initialize();
    showLogin();
    auto* const window = QGuiApplication::topLevelWindows().constFirst();
    require(QTest::qWaitForWindowExposed(window, 60000), "the login window shows");
    exitFromEventLoop();
}

int exitAfterShowingPages(Arguments arguments)
{
    const QGuiApplication application(arguments.count, arguments.values);
    initialize();
    QQmlEngine engine;
    E2e::plugin()->GetPdsMgr()->SetPlugin(E2e::plugin());
    E2e::plugin()->GetPdsMgr()->SetQmlContext(engine.rootContext());
    exitFromEventLoop();
}

int exitDuringAFetch(Arguments arguments)
{
    const QGuiApplication application(arguments.count, arguments.values);
    initialize();
    QCoreApplication::instance()->setProperty("sdkAddr", silentServer());
    E2e::plugin()->GetProjectInfoMgr()->SetPlugin(E2e::plugin());
    E2e::plugin()->GetPdsMgr()->SetPlugin(E2e::plugin());
    E2e::plugin()->GetPdsMgr()->InitBimData();
    const auto* const server = QCoreApplication::instance()->findChild<QTcpServer*>();
    waitUntil([server] { return server->hasPendingConnections(); }, "the list is being fetched");
    exitFromEventLoop();
}

int exitDuringASignIn(Arguments arguments)
{
    const QGuiApplication application(arguments.count, arguments.values);
    initialize();
    const QString address = silentServer();
    const auto* const server = QCoreApplication::instance()->findChild<QTcpServer*>();
    auto* const view = qobject_cast<QQuickView*>(QGuiApplication::topLevelWindows().constFirst());
    auto* const actor = view->rootContext()->contextProperty(QStringLiteral("loginCtrl")).value<QObject*>();
    QTimer::singleShot(0, [server] {
        waitUntil([server] { return server->hasPendingConnections(); }, "the sign-in waits");
        std::exit(Survived);
    });
    QMetaObject::invokeMethod(actor, "login", Q_ARG(QString, QStringLiteral("a")),
                              Q_ARG(QString, QStringLiteral("b")), Q_ARG(QString, address),
                              Q_ARG(QString, QString()));
    return EXIT_FAILURE;
}

//! The managers must be deleted with the second application.
int twoApplications(Arguments arguments)
{
    StartedServices services;
    {
        const QGuiApplication application(arguments.count, arguments.values);
        const E2e::PluginHost host(services.signInUrl());
        require(!host.signIn(services.signInUrl(), QStringLiteral("zhangwei")).sdkAddr.empty(),
                "signed in for the first time");
    }
    {
        const QGuiApplication application(arguments.count, arguments.values);
        initialize();
        E2e::plugin()->GetLoginMgr()->Start();
        auto* const window = QGuiApplication::topLevelWindows().constFirst();
        require(QTest::qWaitForWindowExposed(window, 60000), "the login window shows again");
    }
    require(!E2e::plugin()->GetLoginMgr(), "the managers went with the application");
    {
        const QGuiApplication application(arguments.count, arguments.values);
        const E2e::PluginHost host(services.signInUrl());
        require(!host.signIn(services.signInUrl(), QStringLiteral("lina")).epName.empty(),
                "signed in for the second time");
    }
    return Survived;
}

//! A host that calls Shutdown in several places.
int shutdownsWithoutNeed(Arguments arguments)
{
    const QGuiApplication application(arguments.count, arguments.values);
    require(E2e::plugin()->Shutdown(), "before Initialize");
    initialize();
    require(E2e::plugin()->Shutdown(), "after Initialize");
    require(E2e::plugin()->Shutdown(), "once more");
    return Survived;
}

void initializeAndShutDown(int times)
{
    for (int i = 0; i < times; ++i) {
        initialize();
        shutDown();
    }
}

//! Whatever each Initialize leaves in Qt accumulates.
int thousandTimes(Arguments arguments)
{
    const QGuiApplication application(arguments.count, arguments.values);
    constexpr int rounds = 1000;
    initializeAndShutDown(rounds / 2);
    const double before = Bench::residentBytes();
    initializeAndShutDown(rounds);
    const double growth = Bench::residentBytes() - before;
    std::fprintf(stderr, "%.0f bytes in %d rounds\n", growth, rounds);
    constexpr double kb = 1024;
    require(growth < 128 * kb, "no growth");
    return Survived;
}

} // namespace

void addEnds(Scenarios& scenarios)
{
    scenarios["return after a call"] = returnAfterACall;
    scenarios["exit with the window shown"] = exitWithTheWindowShown;
    scenarios["exit after SetQmlContext"] = exitAfterShowingPages;
    scenarios["exit during a fetch"] = exitDuringAFetch;
    scenarios["exit during a sign-in"] = exitDuringASignIn;
    scenarios["two applications"] = twoApplications;
    scenarios["shutdowns without need"] = shutdownsWithoutNeed;
    scenarios["a thousand times"] = thousandTimes;
}

} // namespace Survival
