#include "tests/e2e/pluginhost.h"
#include "tests/support/messagelog.h"
#include "tests/support/recorders.h"
#include "tests/support/startedservices.h"

#include <NelvoSDK/IProjectInfoMgr.h>

#include <QCoreApplication>
#include <QtTest>

#include <algorithm>

//! The operations of a host on the enterprise's projects after a sign-in, and their effect on the service.
class TestE2eProjects : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void treeAndListArrive();
    void announcedProjectIsAdded();
    void knownProjectIsRenamed();
    void bindingsAreReplaced();
    void pushedOutClientIsTold();

private:
    NelvoSDK::IProjectInfoMgr* projects() const { return E2e::plugin()->GetProjectInfoMgr(); }
    std::list<NelvoSDK::ProjectNode> list() const;
    QString nameOnService(const QString& id) const;

    std::unique_ptr<TestSupport::MessageLog> m_log;
    std::unique_ptr<TestSupport::StartedServices> m_services;
    std::unique_ptr<E2e::PluginHost> m_host;
};

namespace {

constexpr qint64 Enterprise = 1001;
const auto User = QStringLiteral("zhangwei");

} // namespace

void TestE2eProjects::init()
{
    m_log = std::make_unique<TestSupport::MessageLog>();
    m_services = std::make_unique<TestSupport::StartedServices>();
    m_host = std::make_unique<E2e::PluginHost>(m_services->signInUrl());
    projects()->SetPlugin(E2e::plugin());
    projects()->ReflushProjOrgInfo(m_host->signIn(m_services->signInUrl(), User));
}

void TestE2eProjects::cleanup()
{
    m_host.reset();
    m_services.reset();
    m_log.reset();
}

std::list<NelvoSDK::ProjectNode> TestE2eProjects::list() const
{
    std::list<NelvoSDK::ProjectNode> found;
    projects()->GetServerProjectTree(found);
    return found;
}

QString TestE2eProjects::nameOnService(const QString& id) const
{
    const QVector<NelvoDevkit::SceneProject> kept = m_services->editorData().projects(Enterprise);
    const auto found =
        std::find_if(kept.begin(), kept.end(),
                     [&id](const NelvoDevkit::SceneProject& project) { return project.id == id; });
    return found == kept.end() ? QString() : found->name;
}

void TestE2eProjects::treeAndListArrive()
{
    NelvoSDK::OrgTreeNode root;
    QVERIFY(projects()->GetOrgTree(root));
    QVERIFY(!root.name.empty() && !root.children.empty());
    QCOMPARE(int(list().size()), m_services->editorData().projects(Enterprise).size());
    QCOMPARE(QString::fromStdWString(list().front().name), QStringLiteral("滨江文化中心"));
    QVERIFY(list().front().x == L"121.474");
    QCOMPARE(QCoreApplication::instance()->property("epId").toString(), QString::number(Enterprise));
}

void TestE2eProjects::announcedProjectIsAdded()
{
    NelvoSDK::ProjectRef announced;
    announced.id = L"new-1";
    announced.name = L"新桥";
    announced.attrs[L"deptId"] = L"1001-11";
    projects()->AddLocalProject(announced);
    QVERIFY(nameOnService(QStringLiteral("new-1")).isEmpty());

    NelvoSDK::ProjectNode node;
    node.id = announced.id;
    node.name = announced.name;
    node.attrs = announced.attrs;
    projects()->OnUploadProject(node, nullptr, true);
    QCOMPARE(nameOnService(QStringLiteral("new-1")), QStringLiteral("新桥"));
    const std::list<NelvoSDK::ProjectNode> listed = list();
    QVERIFY(std::any_of(listed.begin(), listed.end(),
                        [](const NelvoSDK::ProjectNode& project) { return project.id == L"new-1"; }));
}

void TestE2eProjects::knownProjectIsRenamed()
{
    NelvoSDK::ProjectNode node = list().front();
    node.name = L"改名";
    projects()->OnUploadProject(node, nullptr, true);
    QCOMPARE(nameOnService(QString::fromStdWString(node.id)), QStringLiteral("改名"));
}

void TestE2eProjects::bindingsAreReplaced()
{
    const auto scene = QStringLiteral("scene-1001-01");
    projects()->OnUploadSdkProperty(scene, {{"g1", "SN1"}, {"g2", "SN2"}});
    projects()->OnUploadSdkProperty(scene, {{"g1", "SN1"}, {"g2", "SN2"}, {"g3", "SN3"}});
    const NelvoDevkit::EquipmentBindings bindings = m_services->editorData().bindings(scene);
    QCOMPARE(bindings.deletes, 2);
    QCOMPARE(bindings.batches, 2);
    QCOMPARE(bindings.elements, 3);
}

//! Sends the requests of the first watch directly; the timer sends the others.
void TestE2eProjects::pushedOutClientIsTold()
{
    TestSupport::MessageRecorder observer;
    E2e::plugin()->GetMessageMgr()->Attach(&observer);
    const auto tick = [this] {
        QTimerEvent event(0);
        QCoreApplication::sendEvent(dynamic_cast<QObject*>(projects()), &event);
    };
    tick();
    QVERIFY(observer.heard.isEmpty());
    m_services->editor().pushOut(User, "1002");
    tick();
    QCOMPARE(observer.heard, QStringList{QStringLiteral("first:您的帐号在另一地点登录，您被迫下线")});
    E2e::plugin()->GetMessageMgr()->Detach(&observer);
}

E2E_MAIN(TestE2eProjects)
#include "test_e2e_projects.moc"
