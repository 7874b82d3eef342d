#include "plugin/bimplugin.h"

#include "tests/support/applicationfile.h"
#include "tests/support/recorders.h"

#include <QGuiApplication>
#include <QtTest>

using NelvoPlugin::CBimPlugin;

class TestBimPlugin : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void versionIsFixed();
    void nothingBeforeInitialize();
    void initializeCreatesTheManagers();
    void secondInitializeReplacesTheManagers();
    void shutdownKeepsTheMessageManager();
    void messagesPassAfterShutdown();
    void hostContextSurvives();
    void interfaceWithoutMessageManagerGivesNull();
    void initializeAgainAfterShutdown();

private:
    std::unique_ptr<TestSupport::ApplicationFile> m_defaultServer;
    std::unique_ptr<TestSupport::ApplicationFile> m_installedVersion;
};

void TestBimPlugin::initTestCase()
{
    m_defaultServer =
        std::make_unique<TestSupport::ApplicationFile>(QStringLiteral("defaultServerAddress.json"));
    m_defaultServer->write("{}");
    m_installedVersion = std::make_unique<TestSupport::ApplicationFile>(QStringLiteral("updateConfig.json"));
    m_installedVersion->write("{}");
}

void TestBimPlugin::versionIsFixed()
{
    CBimPlugin plugin;
    QVERIFY(plugin.GetVersion() == L"1.0.0");
    plugin.Initialize();
    QVERIFY(plugin.GetVersion() == L"1.0.0");
}

void TestBimPlugin::nothingBeforeInitialize()
{
    CBimPlugin plugin;
    QVERIFY(!plugin.GetLoginMgr());
    QVERIFY(!plugin.GetProjectInfoMgr());
    QVERIFY(!plugin.GetPdsMgr());
    QVERIFY(!plugin.GetMessageMgr());
    QVERIFY(!plugin.GetHostContext());
    plugin.ReservedHook();
    QVERIFY(!plugin.GetLoginMgr());
}

void TestBimPlugin::initializeCreatesTheManagers()
{
    CBimPlugin plugin;
    QVERIFY(plugin.Initialize());
    QVERIFY(plugin.GetLoginMgr());
    QVERIFY(plugin.GetProjectInfoMgr());
    QVERIFY(plugin.GetPdsMgr());
    QVERIFY(plugin.GetMessageMgr());
    QVERIFY(plugin.GetLoginMgr()->GetLoginActor());
    QVERIFY(!plugin.GetPdsMgr()->GetPlugin());
    QVERIFY(!plugin.GetProjectInfoMgr()->GetPlugin());
    QVERIFY(!plugin.GetLoginMgr()->GetContext());
    QVERIFY(!plugin.GetMessageMgr()->GetContext());
}

void TestBimPlugin::secondInitializeReplacesTheManagers()
{
    CBimPlugin plugin;
    plugin.Initialize();
    // The old manager lives until the new one is stored, so the two addresses differ.
    const NelvoSDK::ILoginMgr* login = plugin.GetLoginMgr();
    const NelvoSDK::IMessageMgr* message = plugin.GetMessageMgr();
    const NelvoSDK::IProjectInfoMgr* project = plugin.GetProjectInfoMgr();
    const NelvoSDK::IPdsMgr* pds = plugin.GetPdsMgr();
    plugin.GetMessageMgr()->SetContext(&plugin);
    QVERIFY(plugin.Initialize());
    QVERIFY(plugin.GetLoginMgr() != login);
    QVERIFY(plugin.GetMessageMgr() != message);
    QVERIFY(plugin.GetProjectInfoMgr() != project);
    QVERIFY(plugin.GetPdsMgr() != pds);
    QVERIFY(!plugin.GetMessageMgr()->GetContext());
    // The old login manager is gone, and its window with it.
    QCOMPARE(QGuiApplication::topLevelWindows().size(), 1);
    plugin.Shutdown();
    QVERIFY(QGuiApplication::topLevelWindows().isEmpty());
}

void TestBimPlugin::shutdownKeepsTheMessageManager()
{
    CBimPlugin plugin;
    plugin.Initialize();
    NelvoSDK::IMessageMgr* message = plugin.GetMessageMgr();
    QVERIFY(plugin.Shutdown());
    QVERIFY(!plugin.GetLoginMgr());
    QVERIFY(!plugin.GetProjectInfoMgr());
    QVERIFY(!plugin.GetPdsMgr());
    QCOMPARE(plugin.GetMessageMgr(), message);
}

void TestBimPlugin::messagesPassAfterShutdown()
{
    CBimPlugin plugin;
    plugin.Initialize();
    TestSupport::MessageRecorder observer;
    plugin.GetMessageMgr()->Attach(&observer);
    plugin.Shutdown();
    plugin.GetMessageMgr()->NotifyFirst(QStringLiteral("still here"));
    QCOMPARE(observer.heard, QStringList{QStringLiteral("first:still here")});
}

void TestBimPlugin::hostContextSurvives()
{
    CBimPlugin plugin;
    int context = 0;
    plugin.SetHostContext(&context);
    plugin.Initialize();
    QCOMPARE(plugin.GetHostContext(), static_cast<void*>(&context));
    plugin.Shutdown();
    QCOMPARE(plugin.GetHostContext(), static_cast<void*>(&context));
    plugin.SetHostContext(nullptr);
    QVERIFY(!plugin.GetHostContext());
}

void TestBimPlugin::interfaceWithoutMessageManagerGivesNull()
{
    class Minimal final : public NelvoSDK::INelvoSDKPlugin
    {
    public:
        bool Initialize() override { return true; }
        bool Shutdown() override { return true; }
        void ReservedHook() override {}
        std::wstring GetVersion() override { return {}; }
        NelvoSDK::ILoginMgr* GetLoginMgr() override { return nullptr; }
        NelvoSDK::IProjectInfoMgr* GetProjectInfoMgr() override { return nullptr; }
        NelvoSDK::IPdsMgr* GetPdsMgr() override { return nullptr; }
    };
    Minimal plugin;
    QVERIFY(!plugin.GetMessageMgr());
}

void TestBimPlugin::initializeAgainAfterShutdown()
{
    CBimPlugin plugin;
    plugin.Initialize();
    plugin.Shutdown();
    QVERIFY(plugin.Initialize());
    QVERIFY(plugin.GetLoginMgr());
    QVERIFY(plugin.Shutdown());
}

QTEST_MAIN(TestBimPlugin)
#include "test_bimplugin.moc"
