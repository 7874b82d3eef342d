#include "plugin/bimplugin.h"

#include "tests/support/applicationfile.h"
#include "tests/support/recorders.h"

#include <QGuiApplication>
#include <QtTest>

#include <algorithm>
#include <array>
#include <functional>
#include <numeric>

using NelvoPlugin::CBimPlugin;

namespace {

using Managers = std::array<const void*, 4>;

Managers managersOf(CBimPlugin& plugin)
{
    return {plugin.GetLoginMgr(), plugin.GetProjectInfoMgr(), plugin.GetPdsMgr(), plugin.GetMessageMgr()};
}

int differences(const Managers& left, const Managers& right)
{
    return static_cast<int>(left.size()) -
           std::inner_product(left.begin(), left.end(), right.begin(), 0, std::plus<>(), std::equal_to<>());
}

//! Calls `gone` at the deletion of each manager except the message manager, which is no QObject.
void watchManagers(CBimPlugin& plugin, const std::function<void(const QString& name)>& gone)
{
    const auto watch = [&gone](auto* object, const char* name) {
        QObject::connect(dynamic_cast<QObject*>(object), &QObject::destroyed,
                         [gone, name] { gone(QString::fromLatin1(name)); });
    };
    watch(plugin.GetLoginMgr()->GetLoginActor(), "login");
    watch(plugin.GetProjectInfoMgr(), "project");
    watch(plugin.GetPdsMgr(), "pds");
}

} // namespace

class TestBimPlugin : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void versionIsFixed();
    void nothingBeforeInitialize();
    void initializeCreatesTheManagers();
    void secondInitializeReplacesTheManagers();
    void managersAreReplacedInOrder_data();
    void managersAreReplacedInOrder();
    void managersAreDeletedInReverseOrder();
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
    // Each old manager exists until the new one is stored, so the addresses differ.
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
    // The old login manager and its window have been deleted.
    QCOMPARE(QGuiApplication::topLevelWindows().size(), 1);
    plugin.Shutdown();
    QVERIFY(QGuiApplication::topLevelWindows().isEmpty());
}

void TestBimPlugin::managersAreReplacedInOrder_data()
{
    QTest::addColumn<bool>("again");
    QTest::newRow("by new ones") << true;
    QTest::newRow("by none") << false;
}

//! The plug-in replaces a manager before it deletes it, and deletes it before it replaces the next one.
void TestBimPlugin::managersAreReplacedInOrder()
{
    QFETCH(bool, again);
    CBimPlugin plugin;
    plugin.Initialize();
    const Managers before = managersOf(plugin);
    QStringList steps;
    watchManagers(plugin, [&](const QString& name) {
        const Managers now = managersOf(plugin);
        steps.append(QStringLiteral("%1 %2").arg(name).arg(differences(now, before)));
        QCOMPARE(std::find(now.begin(), now.end(), nullptr) == now.end(), again);
    });
    if (again)
        plugin.Initialize();
    else
        plugin.Shutdown();
    QCOMPARE(steps, (QStringList{"login 1", "project 2", "pds 3"}));
}

void TestBimPlugin::managersAreDeletedInReverseOrder()
{
    QStringList gone;
    {
        CBimPlugin plugin;
        plugin.Initialize();
        watchManagers(plugin, [&gone](const QString& name) { gone.append(name); });
    }
    QCOMPARE(gone, (QStringList{"pds", "project", "login"}));
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
