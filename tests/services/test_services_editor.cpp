#include "clients.h"

#include "tests/support/row.h"
#include "tests/support/startedservices.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using NelvoDevkit::Fault;
using NelvoDevkit::SceneProject;
using NelvoDevkit::Services;
using NelvoDevkit::ServicesOptions;
using TestSupport::row;
using TestSupport::StartedServices;

namespace {

constexpr char Json[] = "application/json";

QJsonObject object(const Answer& answer)
{
    return QJsonDocument::fromJson(answer.body).object();
}

QJsonArray list(const Answer& answer)
{
    return object(answer)["data"].toArray();
}

QString infoCode(const Answer& answer)
{
    return object(answer)["infoCode"].toString();
}

QByteArray body(const QJsonObject& order)
{
    return QJsonDocument(order).toJson();
}

QByteArray newProject(const QString& id, const QString& deptId = "1001-12")
{
    return body({{"id", id}, {"name", "新项目"}, {"deptId", deptId}});
}

//! Properties of an organisation tree, collected from all its nodes.
struct TreeFacts {
    int nodes = 0;
    int levels = 0;
    int widest = 0; //!< the largest number of children of one node
    QSet<QString> ids;
    QSet<int> types;
    bool parentsFit = true;
};

void walk(const QJsonObject& node, const QString& parent, int level, TreeFacts& facts)
{
    const QJsonArray children = node["children"].toArray();
    ++facts.nodes;
    facts.levels = std::max(facts.levels, level);
    facts.widest = std::max(facts.widest, children.size());
    facts.ids.insert(node["value"].toString());
    facts.types.insert(node["type"].toInt());
    facts.parentsFit = facts.parentsFit && node["parId"].toString() == parent;
    for (const QJsonValue& child : children)
        walk(child.toObject(), node["value"].toString(), level + 1, facts);
}

TreeFacts factsOf(const Answer& tree)
{
    TreeFacts facts;
    walk(object(tree)["data"].toObject(), QString(), 1, facts);
    return facts;
}

} // namespace

class TestServicesEditor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void sessionIsNeeded_data();
    void sessionIsNeeded();
    void sessionLostOnTheWay();
    void sessionOfNobodySeesTheUsualEnterprise();
    void sessionBelongsToTheEnterpriseSignedInTo();
    void sessionIsReboundWithoutNewCookies();
    void secondSignInPushesTheFirstOut();
    void secondSignInLeavesOtherAccountsAlone();
    void secondSignInOfTheSameClientPushesNobodyOut();
    void pushOutTellsTheCode();
    void pushOutEndsWithANewSignIn();
    void pushOutIsForgotten();
    void pushOutByControl();
    void pushOutByControlIsRefused_data();
    void pushOutByControlIsRefused();

    void treeIsTold();
    void treeOfAnEnterpriseWithoutOne();
    void treeIsGenerated_data();
    void treeIsGenerated();

    void projectsAreListed();
    void projectIsAdded();
    void projectIsAddedOnce();
    void projectIsRenamed();
    void projectIsRefused_data();
    void projectIsRefused();
    void projectsOutliveSessionsUntilReset();
    void projectsAreGenerated();

    void bindingsAreCounted();
    void bindingsTakeAnyProjectId_data();
    void bindingsTakeAnyProjectId();
    void bindingsAreRefused();

    void controlShowsAndResetsTheState();
    void controlGenerates();
    void controlRefusesToGenerate_data();
    void controlRefusesToGenerate();

    void seedIsChecked_data();
    void seedIsChecked();
    void seedWithoutEnterprises();

private:
    QString editor(const QString& path) const { return m_services->editorUrl() + path; }
    QString control(const QString& path) const { return m_services->controlUrl() + path; }
    Answer heartbeat(Client& client) const { return client.get(editor("/org/heartbeat")); }
    QByteArray session(const Client& client) const
    {
        return client.cookie(editor("/org/heartbeat"), "EDITORSESSION");
    }
    //! Signs in, enters the enterprise and connects to the editor service.
    void enter(Client& client, const QString& user, const QString& password, const QString& enterpriseId);
    void enterAsLina(Client& client) { enter(client, "lina", "lina2024", "1001"); }

    std::unique_ptr<StartedServices> m_services;
};

void TestServicesEditor::init()
{
    m_services = std::make_unique<StartedServices>();
}

void TestServicesEditor::cleanup()
{
    m_services.reset();
}

void TestServicesEditor::enter(Client& client, const QString& user, const QString& password,
                               const QString& enterpriseId)
{
    client.signIn(m_services->signInUrl(), user, password);
    const Answer bound = client.post(m_services->signInUrl() + "/rs/casLogin/casLogin",
                                     body({{"epid", enterpriseId}, {"version", "1.0.0"}}), Json);
    QCOMPARE(object(bound)["code"].toInt(-1), 0);
    QCOMPARE(heartbeat(client).status, 200);
}

void TestServicesEditor::sessionIsNeeded_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QString>("path");
    QTest::newRow("tree") << QByteArray("GET") << "/org/tree";
    QTest::newRow("projects") << QByteArray("GET") << "/scene/project";
    QTest::newRow("add") << QByteArray("POST") << "/scene/project";
    QTest::newRow("rename") << QByteArray("PUT") << "/scene/project";
    QTest::newRow("delete bindings") << QByteArray("POST") << "/equipment/bind/deleteAll/p";
    QTest::newRow("add bindings") << QByteArray("POST") << "/equipment/bind/batchAdd/p";
}

void TestServicesEditor::sessionIsNeeded()
{
    QFETCH(const QByteArray, method);
    QFETCH(const QString, path);
    Client client;
    const Answer refused = client.send(method, editor(path), {}, Json);
    QCOMPARE(refused.status, 401);
    QCOMPARE(infoCode(refused), QString("1001"));
    QVERIFY(!object(refused)["message"].toString().isEmpty());

    enterAsLina(client);
    QVERIFY(client.send(method, editor(path), {}, Json).status != 401);
    m_services->editor().pushOut("lina", "1002");
    const Answer pushedOut = client.send(method, editor(path), {}, Json);
    QCOMPARE(pushedOut.status, 401);
    QCOMPARE(infoCode(pushedOut), QString("1002"));
}

void TestServicesEditor::sessionLostOnTheWay()
{
    Client client;
    enterAsLina(client);
    m_services->addFault({Fault::LoseSession, "/org/tree", {}, 0, true});
    QCOMPARE(infoCode(client.get(editor("/org/tree"))), QString("1001"));
    QCOMPARE(heartbeat(client).status, 200);
    QCOMPARE(client.get(editor("/org/tree")).status, 200);
}

void TestServicesEditor::sessionOfNobodySeesTheUsualEnterprise()
{
    Client client;
    heartbeat(client);
    QCOMPARE(object(client.get(editor("/org/tree")))["data"].toObject()["value"].toString(), QString("1001"));
}

void TestServicesEditor::sessionBelongsToTheEnterpriseSignedInTo()
{
    Client client;
    enter(client, "陈晓明", "xiaoming", "1003");
    QCOMPARE(object(client.get(editor("/org/tree")))["data"].toObject()["name"].toString(),
             QString("江南水利工程局"));
    QCOMPARE(list(client.get(editor("/scene/project")))[0].toObject()["name"].toString(),
             QString("太浦河泵站"));
}

void TestServicesEditor::sessionIsReboundWithoutNewCookies()
{
    Client client;
    heartbeat(client);
    const QByteArray first = session(client);
    enter(client, "陈晓明", "xiaoming", "1003");
    QCOMPARE(object(client.get(editor("/org/tree")))["data"].toObject()["value"].toString(), QString("1003"));
    enter(client, "müller", "Größe-9é", "1002");
    QCOMPARE(object(client.get(editor("/org/tree")))["data"].toObject()["value"].toString(), QString("1002"));
    QCOMPARE(session(client), first);
    m_services->editor().pushOut("陈晓明");
    QCOMPARE(heartbeat(client).status, 200);
    m_services->editor().pushOut("müller");
    QCOMPARE(heartbeat(client).status, 401);
}

void TestServicesEditor::secondSignInPushesTheFirstOut()
{
    Client first;
    enterAsLina(first);
    Client second;
    enterAsLina(second);
    for (int n = 0; n < 2; ++n) {
        const Answer answer = heartbeat(first);
        QCOMPARE(answer.status, 401);
        QCOMPARE(infoCode(answer), QString("1007"));
        QVERIFY(answer.contentType.startsWith(Json));
        QCOMPARE(heartbeat(second).status, 200);
    }

    enterAsLina(first);
    QCOMPARE(heartbeat(first).status, 200);
    QCOMPARE(infoCode(heartbeat(second)), QString("1007"));
}

void TestServicesEditor::secondSignInLeavesOtherAccountsAlone()
{
    Client nobody;
    heartbeat(nobody);
    Client zhangwei;
    enter(zhangwei, "zhangwei", "123456", "1001");
    Client lina;
    enterAsLina(lina);
    QCOMPARE(heartbeat(nobody).status, 200);
    QCOMPARE(heartbeat(zhangwei).status, 200);
}

void TestServicesEditor::secondSignInOfTheSameClientPushesNobodyOut()
{
    Client client;
    enterAsLina(client);
    const QByteArray first = session(client);
    enterAsLina(client);
    QCOMPARE(session(client), first);
    QCOMPARE(client.get(editor("/org/tree")).status, 200);
}

void TestServicesEditor::pushOutTellsTheCode()
{
    Client client;
    enterAsLina(client);
    m_services->editor().pushOut("zhangwei");
    QCOMPARE(heartbeat(client).status, 200);
    m_services->editor().pushOut("lina");
    QCOMPARE(infoCode(heartbeat(client)), QString("1007"));
    m_services->editor().pushOut("lina", "1002");
    const Answer answer = heartbeat(client);
    QCOMPARE(answer.status, 401);
    QCOMPARE(infoCode(answer), QString("1002"));
}

void TestServicesEditor::pushOutEndsWithANewSignIn()
{
    Client client;
    enterAsLina(client);
    const QByteArray first = session(client);
    m_services->editor().pushOut("lina");
    enterAsLina(client);
    QVERIFY(session(client) != first);
    QCOMPARE(client.get(editor("/org/tree")).status, 200);
}

void TestServicesEditor::pushOutIsForgotten()
{
    Client client;
    enterAsLina(client);
    m_services->editor().pushOut("lina");
    m_services->forgetSessions();
    QCOMPARE(heartbeat(client).status, 200);
}

void TestServicesEditor::pushOutByControl()
{
    Client client;
    enter(client, "陈晓明", "xiaoming", "1003");
    const QString user = "user=%E9%99%88%E6%99%93%E6%98%8E";
    QCOMPARE(client.post(control("/push-out?" + user), {}).status, 200);
    QCOMPARE(infoCode(heartbeat(client)), QString("1007"));
    QCOMPARE(client.post(control("/push-out?code=1002&" + user), {}).status, 200);
    QCOMPARE(infoCode(heartbeat(client)), QString("1002"));
}

void TestServicesEditor::pushOutByControlIsRefused_data()
{
    QTest::addColumn<QString>("parameters");
    QTest::addColumn<QByteArray>("complaint");
    QTest::newRow("none") << "" << QByteArray("parameter \"user\" is one of zhangwei, lina, ");
    QTest::newRow("nobody") << "?user=nobody" << QByteArray("\"nobody\" is no account");
    QTest::newRow("code") << "?user=lina&code=1001" << QByteArray("\"code\" must be 1007 or 1002");
    QTest::newRow("unknown") << "?user=lina&when=now" << QByteArray("there are user, code");
}

void TestServicesEditor::pushOutByControlIsRefused()
{
    QFETCH(const QString, parameters);
    QFETCH(const QByteArray, complaint);
    Client client;
    enterAsLina(client);
    const Answer answer = client.post(control("/push-out" + parameters), {});
    QCOMPARE(answer.status, 400);
    QVERIFY2(answer.body.contains(complaint), answer.body.constData());
    QCOMPARE(heartbeat(client).status, 200);
}

void TestServicesEditor::treeIsTold()
{
    Client client;
    for (const QString& enterprise : {QString("1001"), QString("1003")}) {
        enter(client, "lina", "lina2024", enterprise);
        const Answer tree = client.get(editor("/org/tree"));
        QCOMPARE(tree.status, 200);
        QCOMPARE(object(tree)["code"].toInt(-1), 0);
        const TreeFacts facts = factsOf(tree);
        QVERIFY(facts.levels >= 3);
        QCOMPARE(facts.ids.size(), facts.nodes);
        QCOMPARE(facts.types, (QSet<int>{1, 2}));
        QVERIFY(facts.parentsFit);
    }
}

void TestServicesEditor::treeOfAnEnterpriseWithoutOne()
{
    Client client;
    enter(client, "lina", "lina2024", "1009");
    const Answer tree = client.get(editor("/org/tree"));
    QCOMPARE(object(tree)["data"].toObject()["name"].toString(), QString("云杉数据中心"));
    QCOMPARE(factsOf(tree).nodes, 3);
    QCOMPARE(factsOf(tree).types, (QSet<int>{1, 2}));
    QCOMPARE(client.get(editor("/scene/project")).body, QByteArray(R"({"code":0,"data":[]})"));
}

void TestServicesEditor::treeIsGenerated_data()
{
    QTest::addColumn<int>("nodes");
    QTest::addColumn<int>("levels");
    QTest::newRow("root") << 1 << 1;
    QTest::newRow("two levels") << 11 << 2;
    QTest::newRow("three levels") << 12 << 3;
    QTest::newRow("large") << 20000 << 6;
}

void TestServicesEditor::treeIsGenerated()
{
    QFETCH(const int, nodes);
    Client client;
    heartbeat(client);
    const QByteArray seeded = client.get(editor("/org/tree")).body;
    m_services->editorData().generateTree(nodes);
    const Answer tree = client.get(editor("/org/tree"));
    const TreeFacts facts = factsOf(tree);
    QCOMPARE(facts.nodes, nodes);
    QCOMPARE(facts.ids.size(), nodes);
    QTEST(facts.levels, "levels");
    QCOMPARE(facts.widest, nodes == 1 ? 0 : 10);
    QVERIFY(facts.parentsFit);

    m_services->editorData().generateTree(0);
    QCOMPARE(client.get(editor("/org/tree")).body, tree.body);
    m_services->resetState();
    QCOMPARE(client.get(editor("/org/tree")).body, seeded);
    m_services->editorData().generateTree(nodes);
    QCOMPARE(client.get(editor("/org/tree")).body, tree.body);
}

void TestServicesEditor::projectsAreListed()
{
    Client client;
    enterAsLina(client);
    const QJsonArray projects = list(client.get(editor("/scene/project")));
    QCOMPARE(projects.size(), 3);
    const QJsonObject expected{{"id", "scene-1001-01"},
                               {"name", "滨江文化中心"},
                               {"deptId", "1001-11"},
                               {"deptName", "建筑设计一所"},
                               {"code", "YJ-2024-001"},
                               {"basemap", "tianditu"},
                               {"proj4", "+proj=longlat +datum=WGS84 +no_defs"},
                               {"x", 121.473701},
                               {"y", 31.230416}};
    QCOMPARE(projects[0].toObject(), expected);
    QVERIFY(!projects[1].toObject().contains("basemap"));
    QCOMPARE(projects[1].toObject()["x"].toDouble(), 40512345.678);
}

void TestServicesEditor::projectIsAdded()
{
    Client client;
    enterAsLina(client);
    const Answer answer = client.post(editor("/scene/project"), newProject("p-1"), Json);
    QCOMPARE(answer.status, 200);
    QCOMPARE(object(answer)["code"].toInt(-1), 0);
    const QJsonObject added = list(client.get(editor("/scene/project"))).last().toObject();
    QCOMPARE(added["id"].toString(), QString("p-1"));
    QCOMPARE(added["name"].toString(), QString("新项目"));
    QCOMPARE(added["deptName"].toString(), QString("结构设计所"));

    const QVector<SceneProject> kept = m_services->editorData().projects(1001);
    QCOMPARE(kept.size(), 4);
    QCOMPARE(kept.last().id, QString("p-1"));
    QCOMPARE(kept.last().deptId, QString("1001-12"));
    QCOMPARE(m_services->editorData().projects(1003).size(), 1);
    QVERIFY(m_services->editorData().projects(7).isEmpty());
}

void TestServicesEditor::projectIsAddedOnce()
{
    Client client;
    enterAsLina(client);
    client.post(editor("/scene/project"), newProject("p-1"), Json);
    QCOMPARE(client.post(editor("/scene/project"), newProject("p-1", "1001-30"), Json).status, 409);
    QCOMPARE(m_services->editorData().projects(1001).size(), 4);
    QCOMPARE(m_services->editorData().projects(1001).last().deptId, QString("1001-12"));

    // The same id is free in another enterprise.
    enter(client, "lina", "lina2024", "1003");
    QCOMPARE(client.post(editor("/scene/project"), newProject("p-1", "nowhere"), Json).status, 200);
    QCOMPARE(m_services->editorData().projects(1003).last().deptName, QString());
}

void TestServicesEditor::projectIsRenamed()
{
    Client client;
    enterAsLina(client);
    const QByteArray order = body({{"id", "scene-1001-02"}, {"name", "改名"}});
    QCOMPARE(client.send("PUT", editor("/scene/project"), order, Json).status, 200);
    QCOMPARE(m_services->editorData().projects(1001).at(1).name, QString("改名"));
    QCOMPARE(m_services->editorData().projects(1001).at(1).deptName, QString("数字孪生部"));
    const QByteArray foreign = body({{"id", "scene-1003-01"}, {"name", "改名"}});
    QCOMPARE(client.send("PUT", editor("/scene/project"), foreign, Json).status, 404);
}

void TestServicesEditor::projectIsRefused_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QByteArray>("order");
    const QByteArray add = "POST";
    const QByteArray rename = "PUT";
    QTest::newRow("add nothing") << add << QByteArray();
    QTest::newRow("add an array") << add << QByteArray("[]");
    QTest::newRow("add without unit") << add << body({{"id", "p"}, {"name", "n"}});
    QTest::newRow("add without name") << add << body({{"id", "p"}, {"deptId", "1001-12"}});
    QTest::newRow("add with a number") << add << body({{"id", 1}, {"name", "n"}, {"deptId", "1001-12"}});
    QTest::newRow("add without id") << add << newProject("");
    QTest::newRow("rename nothing") << rename << QByteArray("{");
    QTest::newRow("rename without name") << rename << body({{"id", "scene-1001-01"}});
}

void TestServicesEditor::projectIsRefused()
{
    QFETCH(const QByteArray, method);
    QFETCH(const QByteArray, order);
    Client client;
    enterAsLina(client);
    const QByteArray before = client.get(editor("/scene/project")).body;
    const Answer answer = client.send(method, editor("/scene/project"), order, Json);
    QCOMPARE(answer.status, 400);
    QVERIFY(!object(answer)["message"].toString().isEmpty());
    QCOMPARE(client.get(editor("/scene/project")).body, before);
}

void TestServicesEditor::projectsOutliveSessionsUntilReset()
{
    Client client;
    enterAsLina(client);
    client.post(editor("/scene/project"), newProject("p-1"), Json);
    client.post(editor("/equipment/bind/deleteAll/p-1"), {}, Json);
    m_services->forgetSessions();
    QCOMPARE(m_services->editorData().projects(1001).size(), 4);
    QCOMPARE(m_services->editorData().bindings("p-1").deletes, 1);

    heartbeat(client);
    m_services->resetState();
    QCOMPARE(m_services->editorData().projects(1001).size(), 3);
    QCOMPARE(m_services->editorData().bindings("p-1").deletes, 0);
    QCOMPARE(client.get(editor("/scene/project")).status, 200);
}

void TestServicesEditor::projectsAreGenerated()
{
    Client client;
    enterAsLina(client);
    m_services->editorData().generateProjects(2500);
    m_services->editorData().generateProjects(0);
    const QJsonArray projects = list(client.get(editor("/scene/project")));
    QCOMPARE(projects.size(), 2500);
    QSet<QString> ids;
    for (const QJsonValue& project : projects) {
        ids.insert(project.toObject()["id"].toString());
        QVERIFY(!project.toObject()["deptName"].toString().isEmpty());
    }
    QCOMPARE(ids.size(), 2500);
    QCOMPARE(m_services->editorData().projects(1009).size(), 2500);
    QCOMPARE(m_services->editorData().projects(1009).first().deptId, QString("1009-1"));
}

void TestServicesEditor::bindingsAreCounted()
{
    Client client;
    enterAsLina(client);
    const QString remove = editor("/equipment/bind/deleteAll/scene-1001-01");
    const QString add = editor("/equipment/bind/batchAdd/scene-1001-01");
    QCOMPARE(client.post(remove, {}, Json).status, 200);
    QCOMPARE(client.post(add, "[{}, {}, {}]", Json).status, 200);
    QCOMPARE(client.post(add, "[]", Json).status, 200);
    QCOMPARE(client.post(add, "[{}]", Json).status, 200);
    NelvoDevkit::EquipmentBindings bindings = m_services->editorData().bindings("scene-1001-01");
    QCOMPARE(bindings.deletes, 1);
    QCOMPARE(bindings.batches, 3);
    QCOMPARE(bindings.elements, 4);

    client.post(remove, {}, Json);
    bindings = m_services->editorData().bindings("scene-1001-01");
    QCOMPARE(bindings.deletes, 2);
    QCOMPARE(bindings.batches, 3);
    QCOMPARE(bindings.elements, 0);
    QCOMPARE(m_services->editorData().bindings("scene-1001-02").deletes, 0);
}

void TestServicesEditor::bindingsTakeAnyProjectId_data()
{
    QTest::addColumn<QString>("id");
    QTest::newRow("none") << "";
    QTest::newRow("unknown") << "no-such-project";
    QTest::newRow("chinese") << "项目 1";
    QTest::newRow("slash") << "a/b";
}

void TestServicesEditor::bindingsTakeAnyProjectId()
{
    QFETCH(const QString, id);
    Client client;
    enterAsLina(client);
    QCOMPARE(client.post(editor("/equipment/bind/batchAdd/" + id), "[{}]", Json).status, 200);
    QCOMPARE(m_services->editorData().bindings(id).elements, 1);
}

void TestServicesEditor::bindingsAreRefused()
{
    Client client;
    enterAsLina(client);
    QCOMPARE(client.post(editor("/equipment/bind/deleteAll/p"), "{}", Json).status, 400);
    QCOMPARE(client.post(editor("/equipment/bind/batchAdd/p"), "{}", Json).status, 400);
    QCOMPARE(client.post(editor("/equipment/bind/batchAdd/p"), {}, Json).status, 400);
    QCOMPARE(client.get(editor("/equipment/bind/batchAdd/p")).status, 405);
    QCOMPARE(client.post(editor("/equipment/bind/other/p"), {}, Json).status, 404);
    QCOMPARE(m_services->editorData().bindings("p").deletes, 0);
    QCOMPARE(m_services->editorData().bindings("p").batches, 0);
}

void TestServicesEditor::controlShowsAndResetsTheState()
{
    Client client;
    enterAsLina(client);
    client.post(editor("/scene/project"), newProject("p-1"), Json);
    client.post(editor("/equipment/bind/batchAdd/p-1"), "[{}, {}]", Json);
    const QJsonObject state = object(client.get(control("/state")));
    QCOMPARE(state["projects"].toObject()["1001"].toArray(), list(client.get(editor("/scene/project"))));
    QCOMPARE(state["projects"].toObject().size(), 12);
    const QJsonObject bindings{{"p-1", QJsonObject{{"deletes", 0}, {"batches", 1}, {"elements", 2}}}};
    QCOMPARE(state["bindings"].toObject(), bindings);

    QCOMPARE(client.send("DELETE", control("/state")).status, 200);
    QCOMPARE(m_services->editorData().projects(1001).size(), 3);
    QVERIFY(object(client.get(control("/state")))["bindings"].toObject().isEmpty());
}

void TestServicesEditor::controlGenerates()
{
    Client client;
    enterAsLina(client);
    QCOMPARE(client.post(control("/generate?tree=111&projects=5"), {}).status, 200);
    QCOMPARE(factsOf(client.get(editor("/org/tree"))).nodes, 111);
    QCOMPARE(m_services->editorData().projects(1001).size(), 5);
    QCOMPARE(m_services->editorData().projects(1001).first().deptId, QString("unit-11"));
    QCOMPARE(client.post(control("/generate?projects=7"), {}).status, 200);
    QCOMPARE(client.post(control("/generate?tree=0"), {}).status, 200);
    QCOMPARE(factsOf(client.get(editor("/org/tree"))).nodes, 111);
    QCOMPARE(m_services->editorData().projects(1001).size(), 7);
}

void TestServicesEditor::controlRefusesToGenerate_data()
{
    QTest::addColumn<QString>("parameters");
    QTest::addColumn<QByteArray>("complaint");
    QTest::newRow("text") << "?tree=much" << QByteArray("\"tree\" must be a number from 0 to 1000000");
    QTest::newRow("negative") << "?tree=5&projects=-1" << QByteArray("\"projects\" must be a number from 0");
    QTest::newRow("too many") << "?projects=1000001" << QByteArray("\"projects\" must be a number from 0");
    QTest::newRow("unknown") << "?trees=1" << QByteArray("there are tree, projects");
}

void TestServicesEditor::controlRefusesToGenerate()
{
    QFETCH(const QString, parameters);
    QFETCH(const QByteArray, complaint);
    Client client;
    heartbeat(client);
    const QByteArray before = client.get(editor("/org/tree")).body;
    const Answer answer = client.post(control("/generate" + parameters), {});
    QCOMPARE(answer.status, 400);
    QVERIFY2(answer.body.contains(complaint), answer.body.constData());
    QCOMPARE(client.get(editor("/org/tree")).body, before);
}

void TestServicesEditor::seedIsChecked_data()
{
    QTest::addColumn<QByteArray>("more");
    QTest::addColumn<QString>("complaint");
    const QByteArray unit = R"("organisation": {"value": "u", "name": "n", "type": 2})";
    const QByteArray project =
        R"({"id": "p", "name": "n", "deptId": "u", "code": "c", "proj4": "4", "x": 1, "y": 2})";
    const auto projects = [&](const QByteArray& entries) {
        return unit + R"(, "projects": [)" + entries + ']';
    };
    const auto altered = [&](const QByteArray& from, const QByteArray& to) {
        return projects(QByteArray(project).replace(from, to));
    };

    row("organisation of the wrong kind", QByteArray(R"("organisation": [])"),
        "enterprises[0]: organisation must be an object");
    row("unit without value", QByteArray(R"("organisation": {"name": "n", "type": 1})"),
        "enterprises[0]: organisation needs a text \"value\"");
    row("unit of another type", QByteArray(R"("organisation": {"value": "u", "name": "n", "type": 3})"),
        "enterprises[0]: organisation: \"type\" must be 1 or 2");
    row("children of the wrong kind",
        QByteArray(R"("organisation": {"value": "u", "name": "n", "type": 1, "children": {}})"),
        "enterprises[0]: organisation needs an array \"children\"");
    row("unit twice", QByteArray(R"("organisation": {"value": "u", "name": "n", "type": 1,
                         "children": [{"value": "u", "name": "m", "type": 2}]})"),
        "enterprises[0]: organisation: children[0]: there is a unit \"u\" already");
    row("projects of the wrong kind", QByteArray(R"("projects": {})"),
        "enterprises[0] needs an array \"projects\"");
    row("project of the wrong kind", projects("1"), "enterprises[0]: projects[0] must be an object");
    row("project without name", altered("\"name\"", "\"no\""),
        "enterprises[0]: projects[0] needs a text \"name\"");
    row("project of an unknown unit", altered("\"u\"", "\"v\""),
        "enterprises[0]: projects[0]: there is no unit \"v\"");
    row("empty basemap", altered("\"x\"", R"("basemap": "", "x")"),
        "enterprises[0]: projects[0] needs a text \"basemap\"");
    row("coordinate of the wrong kind", altered("1", "\"1\""),
        "enterprises[0]: projects[0] needs a number \"x\"");
    row("project twice", projects(project + ',' + project),
        "enterprises[0]: projects[1]: there is a project \"p\" already");
}

void TestServicesEditor::seedIsChecked()
{
    QFETCH(const QByteArray, more);
    QFETCH(const QString, complaint);
    const QTemporaryDir folder;
    ServicesOptions options;
    options.seedFile = folder.filePath("seed.json");
    QFile file(options.seedFile);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(R"({"accounts": [], "enterprises": [{"id": 1, "name": "e", )" + more + "}]}");
    file.close();

    QString error;
    QVERIFY(!Services(options).start(&error));
    QVERIFY2(error.startsWith("seed file " + options.seedFile + ": " + complaint), qPrintable(error));
}

void TestServicesEditor::seedWithoutEnterprises()
{
    const QTemporaryDir folder;
    ServicesOptions options;
    options.seedFile = folder.filePath("seed.json");
    QFile file(options.seedFile);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(R"({"accounts": [], "enterprises": []})");
    file.close();

    m_services = std::make_unique<StartedServices>(options);
    QVERIFY(m_services->editorData().projects(1001).isEmpty());
    Client client;
    heartbeat(client);
    QCOMPARE(factsOf(client.get(editor("/org/tree"))).nodes, 3);
}

QTEST_GUILESS_MAIN(TestServicesEditor)
#include "test_services_editor.moc"
