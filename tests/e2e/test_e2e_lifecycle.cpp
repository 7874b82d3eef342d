#include "tests/e2e/pluginhost.h"
#include "tests/support/messagelog.h"

#include <QFile>
#include <QGuiApplication>
#include <QtTest>

#include <thread>

//! The plug-in as a host uses it: export, managers, resources, shutdown.
class TestE2eLifecycle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCallGivesTheSameObject();
    void managersComeAndGo();
    void resourcesComeWithTheLibrary();
    void hostContextPassesThrough();
    void shutdownWithAnOpenWindowIsQuiet();
};

void TestE2eLifecycle::everyCallGivesTheSameObject()
{
    NelvoSDK::INelvoSDKPlugin* first = E2e::plugin();
    QVERIFY(first);
    QCOMPARE(E2e::plugin(), first);
    NelvoSDK::INelvoSDKPlugin* elsewhere = nullptr;
    std::thread([&elsewhere] { elsewhere = E2e::plugin(); }).join();
    QCOMPARE(elsewhere, first);
    QVERIFY(first->GetVersion() == L"1.0.0");
}

void TestE2eLifecycle::managersComeAndGo()
{
    QVERIFY(!E2e::plugin()->GetLoginMgr());
    QVERIFY(!E2e::plugin()->GetMessageMgr());
    {
        const E2e::PluginHost host(QStringLiteral("http://127.0.0.1:9"));
        QVERIFY(E2e::plugin()->GetLoginMgr());
        QVERIFY(E2e::plugin()->GetProjectInfoMgr());
        QVERIFY(E2e::plugin()->GetPdsMgr());
        QVERIFY(E2e::plugin()->GetMessageMgr());
        QVERIFY(E2e::plugin()->GetVersion() == L"1.0.0");
    }
    QVERIFY(!E2e::plugin()->GetLoginMgr());
    QVERIFY(!E2e::plugin()->GetProjectInfoMgr());
    QVERIFY(!E2e::plugin()->GetPdsMgr());
    QVERIFY(E2e::plugin()->GetMessageMgr());
}

void TestE2eLifecycle::resourcesComeWithTheLibrary()
{
    E2e::plugin();
    for (const char* file :
         {"Main.qml", "BizComp/LoginComp.qml", "BizComp/ApplistComp.qml", "BizComp/ValidComp.qml",
          "FuncComp/Background.qml", "BimDialog/BimDialogControl.qml", "Extern/SDKBindParam.qml",
          "images/nelvo.png"}) {
        QVERIFY2(QFile::exists(QStringLiteral(":/NelvoPlugin/qmls/") + QLatin1String(file)), file);
    }
}

void TestE2eLifecycle::hostContextPassesThrough()
{
    int context = 0;
    E2e::plugin()->SetHostContext(&context);
    {
        const E2e::PluginHost host(QStringLiteral("http://127.0.0.1:9"));
        QCOMPARE(E2e::plugin()->GetHostContext(), static_cast<void*>(&context));
    }
    QCOMPARE(E2e::plugin()->GetHostContext(), static_cast<void*>(&context));
    E2e::plugin()->SetHostContext(nullptr);
}

void TestE2eLifecycle::shutdownWithAnOpenWindowIsQuiet()
{
    TestSupport::MessageLog log;
    {
        const E2e::PluginHost host(QStringLiteral("http://127.0.0.1:9"));
        E2e::plugin()->GetLoginMgr()->Start();
        QVERIFY(QTest::qWaitForWindowExposed(host.window()));
    }
    QVERIFY(QGuiApplication::topLevelWindows().isEmpty());
    QVERIFY2(log.warnings().isEmpty(), qPrintable(log.warnings().join(QLatin1Char('\n'))));
}

E2E_MAIN(TestE2eLifecycle)
#include "test_e2e_lifecycle.moc"
