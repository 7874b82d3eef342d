#include "tests/e2e/pluginhost.h"
#include "tests/e2e/wire.h"
#include "tests/support/messagelog.h"
#include "tests/support/startedservices.h"

#include <NelvoSDK/IProjectInfoMgr.h>

#include <QCoreApplication>
#include <QtTest>

//! Every request of a host's operations on projects after a sign-in, as sent to the services.
class TestE2eProjectsWire : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void projectsToTheByte();
};

namespace {

const auto Scene = QStringLiteral("scene-1001-01");

NelvoSDK::ProjectNode announcedProject(NelvoSDK::IProjectInfoMgr& projects)
{
    NelvoSDK::ProjectNode node;
    node.id = L"新-1";
    node.name = L"桥 \"一\" \\ \U0001F3D7";
    node.code = L"never sent";
    node.attrs = {{L"deptId", L"1001-11"}, {L"deptName", L"never sent"}};
    NelvoSDK::ProjectRef announced;
    announced.id = node.id;
    announced.name = node.name;
    announced.attrs = node.attrs;
    projects.AddLocalProject(announced);
    return node;
}

//! A refresh, the list, each of the uploads, and a request of the session watch.
void work(NelvoSDK::IProjectInfoMgr& projects, const NelvoSDK::LoginSession& session)
{
    projects.SetPlugin(E2e::plugin());
    projects.ReflushProjOrgInfo(session);
    std::list<NelvoSDK::ProjectNode> listed;
    projects.GetServerProjectTree(listed);
    projects.OnUploadProject(announcedProject(projects), nullptr, true);
    QVERIFY(!listed.empty());
    NelvoSDK::ProjectNode renamed = listed.front();
    renamed.name = L"改名/1";
    projects.OnUploadProject(renamed, nullptr, true);
    projects.OnUploadSdkProperty(Scene, {{"g2", "SN2"}, {"g1", "SN1"}});
    QTimerEvent event(0);
    QCoreApplication::sendEvent(dynamic_cast<QObject*>(&projects), &event);
}

QByteArray scenes(const NelvoDevkit::Services& services)
{
    QStringList names;
    const QVector<NelvoDevkit::SceneProject> kept = services.editorData().projects(1001);
    for (const NelvoDevkit::SceneProject& project : kept)
        names.append(project.id + QLatin1Char('=') + project.name);
    return names.join(QLatin1Char('\n')).toUtf8();
}

} // namespace

void TestE2eProjectsWire::projectsToTheByte()
{
    TestSupport::StartedServices services;
    const E2e::PluginHost host(services.signInUrl());
    const TestSupport::MessageLog log;
    const NelvoSDK::LoginSession session = host.signIn(services.signInUrl(), QStringLiteral("zhangwei"));
    const int signInEntries = log.entries().size();
    services.log().clear();
    work(*E2e::plugin()->GetProjectInfoMgr(), session);

    // The cookies of the session, without those of the sign-in service.
    const QByteArray cookies = "Cookie: EDITORSESSION=*; route=*\n";
    const auto jsonOf = [&cookies](int length) {
        return "Content-Type: application/json\n" + cookies +
               "Content-Length: " + QByteArray::number(length) + '\n';
    };
    const QByteArray added = "{\n"
                             "    \"deptId\": \"1001-11\",\n"
                             "    \"id\": \"新-1\",\n"
                             "    \"name\": \"桥 \\\"一\\\" \\\\ \U0001F3D7\"\n"
                             "}\n";
    const QByteArray renamed = "{\n"
                               "    \"id\": \"scene-1001-01\",\n"
                               "    \"name\": \"改名/1\"\n"
                               "}\n";
    const QByteArray batch = "[\n"
                             "    {\n"
                             "    },\n"
                             "    {\n"
                             "    }\n"
                             "]\n";
    const QByteArrayList wire{
        E2e::request("GET /org/tree", "EDITOR", cookies),
        E2e::request("GET /scene/project", "EDITOR", cookies),
        E2e::request("POST /scene/project", "EDITOR", jsonOf(added.size()), added),
        E2e::request("PUT /scene/project", "EDITOR", jsonOf(renamed.size()), renamed),
        E2e::request("POST /equipment/bind/deleteAll/scene-1001-01", "EDITOR", jsonOf(0)),
        E2e::request("POST /equipment/bind/batchAdd/scene-1001-01", "EDITOR", jsonOf(29), batch),
        E2e::request("GET /org/heartbeat", "EDITOR", cookies),
    };
    const QByteArrayList sent = E2e::receivedBy(services);
    QCOMPARE(sent.size(), wire.size());
    for (int index = 0; index < wire.size(); ++index)
        QCOMPARE(sent.at(index), wire.at(index));

    QCOMPARE(log.entries().size(), signInEntries);
    QCOMPARE(scenes(services), QByteArray("scene-1001-01=改名/1\n"
                                          "scene-1001-02=高铁新城综合枢纽（一期）\n"
                                          "scene-1001-03=科技馆 “星空” 展厅\n"
                                          "新-1=桥 \"一\" \\ \U0001F3D7"));
    const NelvoDevkit::EquipmentBindings bindings = services.editorData().bindings(Scene);
    QCOMPARE(bindings.deletes, 1);
    QCOMPARE(bindings.batches, 1);
    QCOMPARE(bindings.elements, 2);
}

E2E_MAIN(TestE2eProjectsWire)
#include "test_e2e_projects_wire.moc"
