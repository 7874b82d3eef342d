#include "clients.h"

#include "tests/support/files.h"
#include "tests/support/row.h"
#include "tests/support/startedservices.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>
#include <QUuid>

using NelvoDevkit::BimModel;
using NelvoDevkit::Services;
using NelvoDevkit::ServicesOptions;
using TestSupport::contentOf;
using TestSupport::row;
using TestSupport::StartedServices;

namespace {

constexpr char Json[] = "application/json";
constexpr char ModelsPath[] = "/bim/relation/";
constexpr char DrawingsPath[] = "/bim/relation/dwg";

QJsonObject object(const Answer& answer)
{
    return QJsonDocument::fromJson(answer.body).object();
}

QJsonArray list(const Answer& answer)
{
    return object(answer)["data"].toArray();
}

//! The values of the member `name` in all rows.
QVariantList column(const QJsonArray& rows, const QString& name)
{
    QVariantList values;
    for (const QJsonValue& row : rows)
        values.append(row.toObject()[name].toVariant());
    return values;
}

void collectIds(const QJsonObject& node, QSet<QString>& ids)
{
    ids.insert(node["value"].toString());
    const QJsonArray children = node["children"].toArray();
    for (const QJsonValue& child : children)
        collectIds(child.toObject(), ids);
}

//! The ids of all units in a received organisation tree.
QSet<QString> units(const Answer& tree)
{
    QSet<QString> ids;
    collectIds(object(tree)["data"].toObject(), ids);
    return ids;
}

} // namespace

class TestServicesBim : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void sessionIsNeeded_data();
    void sessionIsNeeded();
    void pathIsTakenExactly_data();
    void pathIsTakenExactly();

    void modelsAreListed();
    void modelsAreOfEveryProfession();
    void drawingsAreListed();
    void listsAreTheEnterprisesOwn();
    void listsMayBeEmpty();
    void listsFitTheTree_data();
    void listsFitTheTree();
    void databaseKnowsSomeOfTheModels();

    void modelsAreGenerated();
    void modelsAreSpreadOverAGeneratedTree();
    void modelsAreReset();
    void modelsAreGeneratedByControl();

    void seedIsChecked_data();
    void seedIsChecked();
    void seedMayHaveNoModels();

private:
    QString editor(const QString& path) const { return m_services->editorUrl() + path; }
    QString control(const QString& path) const { return m_services->controlUrl() + path; }
    //! Signs in as lina, enters the enterprise and connects to the editor service.
    void enter(Client& client, int enterpriseId = 1001);

    std::unique_ptr<StartedServices> m_services;
};

void TestServicesBim::init()
{
    m_services = std::make_unique<StartedServices>();
}

void TestServicesBim::cleanup()
{
    m_services.reset();
}

void TestServicesBim::enter(Client& client, int enterpriseId)
{
    client.signIn(m_services->signInUrl(), "lina", "lina2024");
    const QJsonObject order{{"epid", QString::number(enterpriseId)}, {"version", "1.0.0"}};
    const Answer bound =
        client.post(m_services->signInUrl() + "/rs/casLogin/casLogin", QJsonDocument(order).toJson(), Json);
    QCOMPARE(object(bound)["code"].toInt(-1), 0);
    QCOMPARE(client.get(editor("/org/heartbeat")).status, 200);
}

void TestServicesBim::sessionIsNeeded_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("models") << ModelsPath;
    QTest::newRow("drawings") << DrawingsPath;
}

void TestServicesBim::sessionIsNeeded()
{
    QFETCH(const QString, path);
    Client client;
    const Answer refused = client.get(editor(path));
    QCOMPARE(refused.status, 401);
    QCOMPARE(object(refused)["infoCode"].toString(), QString("1001"));

    enter(client);
    QCOMPARE(client.get(editor(path)).status, 200);
    m_services->editor().pushOut("lina", "1002");
    const Answer pushedOut = client.get(editor(path));
    QCOMPARE(pushedOut.status, 401);
    QCOMPARE(object(pushedOut)["infoCode"].toString(), QString("1002"));
}

void TestServicesBim::pathIsTakenExactly_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("status");
    QTest::newRow("without slash") << QByteArray("GET") << "/bim/relation" << 404;
    QTest::newRow("more") << QByteArray("GET") << "/bim/relation/dwg/" << 404;
    QTest::newRow("post models") << QByteArray("POST") << ModelsPath << 405;
    QTest::newRow("post drawings") << QByteArray("POST") << DrawingsPath << 405;
}

void TestServicesBim::pathIsTakenExactly()
{
    QFETCH(const QByteArray, method);
    QFETCH(const QString, path);
    Client client;
    enter(client);
    QTEST(client.send(method, editor(path), {}, Json).status, "status");
}

void TestServicesBim::modelsAreListed()
{
    Client client;
    enter(client);
    const Answer answer = client.get(editor(ModelsPath));
    QCOMPARE(object(answer)["code"].toInt(-1), 0);
    const QJsonObject expected{{"nelvo3dId", "d68e7dd9-a4f5-5cf0-aab7-23728142babc"},
                               {"ppName", "滨江文化中心 土建预算"},
                               {"deptId", "1001-11"},
                               {"ppid", 50101},
                               {"projType", 1},
                               {"projectSize", 1536000}};
    QCOMPARE(list(answer).first().toObject(), expected);

    const QVector<BimModel> kept = m_services->editorData().models(1001).models;
    QCOMPARE(kept.size(), list(answer).size());
    QCOMPARE(kept.first().guid, expected["nelvo3dId"].toString());
    QCOMPARE(kept.first().name, expected["ppName"].toString());
    QCOMPARE(kept.first().deptId, expected["deptId"].toString());
    QCOMPARE(kept.first().ppid, qint64{50101});
    QCOMPARE(kept.first().profession, qint64{1});
    QCOMPARE(kept.first().size, qint64{1536000});
}

void TestServicesBim::modelsAreOfEveryProfession()
{
    Client client;
    enter(client);
    const QJsonArray rows = list(client.get(editor(ModelsPath)));
    QSet<int> professions;
    for (const QVariant& profession : column(rows, "projType"))
        professions.insert(profession.toInt());
    QCOMPARE(professions, (QSet<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 20}));
}

void TestServicesBim::drawingsAreListed()
{
    Client client;
    enter(client);
    const QJsonArray rows = list(client.get(editor(DrawingsPath)));
    const QJsonObject expected{{"nelvo3dId", "b1a10b57-250b-5c27-83fa-a7631c77f9aa"},
                               {"dwgName", "滨江文化中心 一层平面图"},
                               {"deptId", "1001-112"},
                               {"ppid", 80101},
                               {"projType", 1},
                               {"projectSize", 409600}};
    QCOMPARE(rows.first().toObject(), expected);
    QCOMPARE(m_services->editorData().models(1001).drawings.size(), rows.size());
    QCOMPARE(m_services->editorData().models(1001).drawings.first().name, expected["dwgName"].toString());
}

void TestServicesBim::listsAreTheEnterprisesOwn()
{
    Client client;
    enter(client, 1003);
    QCOMPARE(column(list(client.get(editor(ModelsPath))), "ppName").first().toString(),
             QString("太浦河泵站 土建预算"));
    QCOMPARE(column(list(client.get(editor(DrawingsPath))), "dwgName").first().toString(),
             QString("太浦河泵站 枢纽布置图"));
    enter(client, 1002);
    QCOMPARE(column(list(client.get(editor(ModelsPath))), "ppName").first().toString(),
             QString("轨道交通 7 号线 车站主体"));
}

void TestServicesBim::listsMayBeEmpty()
{
    Client client;
    enter(client, 1009);
    QCOMPARE(client.get(editor(ModelsPath)).body, QByteArray(R"({"code":0,"data":[]})"));
    QCOMPARE(client.get(editor(DrawingsPath)).body, QByteArray(R"({"code":0,"data":[]})"));
    QVERIFY(m_services->editorData().models(7).models.isEmpty());
    QVERIFY(m_services->editorData().models(7).drawings.isEmpty());
}

void TestServicesBim::listsFitTheTree_data()
{
    QTest::addColumn<int>("enterprise");
    QTest::newRow("1001") << 1001;
    QTest::newRow("1002") << 1002;
    QTest::newRow("1003") << 1003;
}

void TestServicesBim::listsFitTheTree()
{
    QFETCH(const int, enterprise);
    Client client;
    enter(client, enterprise);
    const QSet<QString> known = units(client.get(editor("/org/tree")));
    QSet<QString> guids;
    int rows = 0;
    for (const char* path : {ModelsPath, DrawingsPath}) {
        const QJsonArray answered = list(client.get(editor(path)));
        QVERIFY(!answered.isEmpty());
        for (const QJsonValue& row : answered) {
            QVERIFY(known.contains(row.toObject()["deptId"].toString()));
            const QString guid = row.toObject()["nelvo3dId"].toString();
            QCOMPARE(QUuid::fromString(guid).toString(QUuid::WithoutBraces), guid);
            guids.insert(guid);
            ++rows;
        }
    }
    QCOMPARE(guids.size(), rows);
}

//! The stand-in for the editor's database contains some of these models, with the same ids and names.
void TestServicesBim::databaseKnowsSomeOfTheModels()
{
    QMap<QString, QString> names;
    for (const qint64 enterprise : {1001, 1002, 1003}) {
        const QVector<BimModel> seeded = m_services->editorData().models(enterprise).models;
        for (const BimModel& model : seeded)
            names.insert(model.guid, model.name);
    }
    const QJsonArray known =
        QJsonDocument::fromJson(contentOf(NELVO_MODELS_FILE)).object()["objects"].toArray();
    QVERIFY(known.size() >= 5);
    QVERIFY(known.size() < names.size());
    for (const QJsonValue& model : known)
        QCOMPARE(names.value(model.toObject()["id"].toString()), model.toObject()["name"].toString());
}

void TestServicesBim::modelsAreGenerated()
{
    Client client;
    enter(client);
    m_services->editorData().generateModels(2500);
    m_services->editorData().generateModels(0);
    const QSet<QString> known = units(client.get(editor("/org/tree")));
    QSet<QString> guids;
    for (const char* path : {ModelsPath, DrawingsPath}) {
        const QJsonArray rows = list(client.get(editor(path)));
        QCOMPARE(rows.size(), 2500);
        for (const QJsonValue& row : rows) {
            QVERIFY(!QUuid::fromString(row.toObject()["nelvo3dId"].toString()).isNull());
            QVERIFY(known.contains(row.toObject()["deptId"].toString()));
            guids.insert(row.toObject()["nelvo3dId"].toString());
        }
    }
    QCOMPARE(guids.size(), 5000);
    QCOMPARE(m_services->editorData().models(1009).models.size(), 2500);
    QCOMPARE(m_services->editorData().models(1009).drawings.last().deptId, QString("1009-2"));
}

void TestServicesBim::modelsAreSpreadOverAGeneratedTree()
{
    Client client;
    enter(client);
    m_services->editorData().generateTree(111);
    m_services->editorData().generateModels(250);
    QSet<QString> departments;
    for (const QVariant& department : column(list(client.get(editor(ModelsPath))), "deptId"))
        departments.insert(department.toString());
    QCOMPARE(departments.size(), 100); // the departments of the lowest level
    QVERIFY(units(client.get(editor("/org/tree"))).contains(departments));
}

void TestServicesBim::modelsAreReset()
{
    Client client;
    enter(client);
    const QByteArray seededModels = client.get(editor(ModelsPath)).body;
    const QByteArray seededDrawings = client.get(editor(DrawingsPath)).body;
    m_services->editorData().generateModels(5);
    QVERIFY(client.get(editor(ModelsPath)).body != seededModels);
    m_services->forgetSessions();
    QCOMPARE(m_services->editorData().models(1001).models.size(), 5);
    m_services->resetState();
    QCOMPARE(client.get(editor("/org/heartbeat")).status, 200);
    QCOMPARE(client.get(editor(ModelsPath)).body, seededModels);
    QCOMPARE(client.get(editor(DrawingsPath)).body, seededDrawings);
}

void TestServicesBim::modelsAreGeneratedByControl()
{
    Client client;
    enter(client);
    QCOMPARE(client.post(control("/generate?models=7&tree=12"), {}).status, 200);
    QCOMPARE(list(client.get(editor(ModelsPath))).size(), 7);
    QCOMPARE(list(client.get(editor(DrawingsPath))).size(), 7);
    QVERIFY(m_services->editorData().models(1001).models.first().deptId.startsWith("unit-"));
    QCOMPARE(m_services->editorData().projects(1001).size(), 3);

    QCOMPARE(client.post(control("/generate?models=0"), {}).status, 200);
    const Answer refused = client.post(control("/generate?models=1000001&tree=5"), {});
    QCOMPARE(refused.status, 400);
    QVERIFY2(refused.body.contains("\"models\" must be a number from 0 to 1000000"),
             refused.body.constData());
    QCOMPARE(m_services->editorData().models(1001).models.size(), 7);
    QCOMPARE(client.send("DELETE", control("/state")).status, 200);
    QCOMPARE(m_services->editorData().models(1001).models.size(), 13);
}

namespace {

//! A seed file with one enterprise, which has the additional members `more`.
class SeedFile
{
public:
    explicit SeedFile(const QByteArray& more)
    {
        const QByteArray content =
            R"({"accounts": [], "enterprises": [{"id": 1, "name": "e", "organisation":
                {"value": "u", "name": "n", "type": 2}, )" +
            more + "}]}";
        QFile file(name());
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
    }

    QString name() const { return m_folder.filePath("seed.json"); }
    ServicesOptions options() const
    {
        ServicesOptions options;
        options.seedFile = name();
        return options;
    }

private:
    const QTemporaryDir m_folder;
};

} // namespace

void TestServicesBim::seedIsChecked_data()
{
    QTest::addColumn<QByteArray>("more");
    QTest::addColumn<QString>("complaint");
    const QByteArray model =
        R"({"nelvo3dId": "g", "ppName": "n", "deptId": "u", "ppid": 1, "projType": 4, "projectSize": 9})";
    const auto listed = [](const QByteArray& entries) { return R"("bimModels": [)" + entries + ']'; };
    const auto altered = [&](const QByteArray& from, const QByteArray& to) {
        return listed(QByteArray(model).replace(from, to));
    };
    const auto drawing = [&](const QByteArray& from, const QByteArray& to) {
        return R"("dwgModels": [)" + QByteArray(model).replace(from, to) + ']';
    };

    row("models of the wrong kind", QByteArray(R"("bimModels": {})"),
        "enterprises[0] needs an array \"bimModels\"");
    row("drawings of the wrong kind", QByteArray(R"("dwgModels": 1)"),
        "enterprises[0] needs an array \"dwgModels\"");
    row("model of the wrong kind", listed("[]"), "enterprises[0]: bimModels[0] must be an object");
    row("model without id", altered("\"g\"", "\"\""),
        "enterprises[0]: bimModels[0] needs a text \"nelvo3dId\"");
    row("model with the name of a drawing", altered("ppName", "dwgName"),
        "enterprises[0]: bimModels[0] needs a text \"ppName\"");
    row("drawing with the name of a model", drawing("9", "8"),
        "enterprises[0]: dwgModels[0] needs a text \"dwgName\"");
    row("model of an unknown unit", altered("\"u\"", "\"v\""),
        "enterprises[0]: bimModels[0]: there is no unit \"v\"");
    row("number as a text", altered("1", "\"1\""),
        "enterprises[0]: bimModels[0]: \"ppid\" must be a whole number");
    row("profession missing", altered("projType", "type"),
        "enterprises[0]: bimModels[0]: \"projType\" must be a whole number");
    row("negative size", altered("9", "-9"),
        "enterprises[0]: bimModels[0]: \"projectSize\" must be a whole number");
    row("id twice", listed(model + ',' + model),
        "enterprises[0]: bimModels[1]: there is a model \"g\" already");
}

void TestServicesBim::seedIsChecked()
{
    QFETCH(const QByteArray, more);
    QFETCH(const QString, complaint);
    const SeedFile seed(more);
    QString error;
    QVERIFY(!Services(seed.options()).start(&error));
    QVERIFY2(error.startsWith("seed file " + seed.name() + ": " + complaint), qPrintable(error));
}

void TestServicesBim::seedMayHaveNoModels()
{
    const SeedFile seed(R"("projects": [])");
    Services services(seed.options());
    QVERIFY(services.editorData().models(1).models.isEmpty());
    services.editorData().generateModels(2);
    QVERIFY(services.start());
    QCOMPARE(services.editorData().models(1).models.size(), 2);
    services.editorData().generateModels(3);
    QCOMPARE(services.editorData().models(1).drawings.size(), 3);
}

QTEST_GUILESS_MAIN(TestServicesBim)
#include "test_services_bim.moc"
