#include "tests/support/row.h"

#include <VLSmartDB/DevkitDatabase.h>
#include <VLSmartDB/IVLDBDirector.h>

#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace VLSmartDB;

using TestSupport::row;

namespace {

constexpr char Bridge[] = "0A1B2c3d-4e5f-6071-8293-a4b5c6d7e8f9";

VLDBId textId(const std::wstring& text)
{
    VLDBId id;
    id.text = text;
    return id;
}

//! The binary form of the id `Bridge`.
VLDBId bridgeId()
{
    return {0x0a1b2c3d, 0x4e5f, 0x6071, {0x82, 0x93, 0xa4, 0xb5, 0xc6, 0xd7, 0xe8, 0xf9}, {}};
}

IVLDB& database()
{
    return *GetIDBDirector()->GetDB();
}

IVLDBObject* object(const VLDBId& id)
{
    return database().GetObject(id, {});
}

std::vector<VLDBId> childIds(IVLDBObject* parent)
{
    std::vector<VLDBId> ids{textId(L"what is there already")};
    parent->GetChildren()->ListIds(ids);
    return ids;
}

ObjectRecord bridgeRecord()
{
    const ObjectRecord drawing{"drawing", "立面图", "DWG", {}, {}};
    const ObjectRecord pier{"pier-1", "桥墩", "PDS", {{"editor_import_source_type", "fbx"}}, {drawing}};
    return {Bridge, "跨江大桥", "BIM", {{"owner", "远景"}, {"empty", ""}}, {pier}};
}

} // namespace

class TestDatabase : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { clearDatabase(); }

    void directorIsTheOnlyOne();
    void objectIsThereOnceLoaded();
    void objectIsFoundByTheWholeId_data();
    void objectIsFoundByTheWholeId();
    void objectTellsItsData();
    void objectHasNoChildren();
    void childrenComeWithTheirParent();
    void childIsLoadedAlone();
    void loadOfWhatIsNotThere();
    void scopeIsTheWholeDatabaseOnly();
    void clearLeavesNothing();

    void addIsRefused_data();
    void addIsRefused();
    void fileReplacesWhatThereWas();
    void fileIsChecked_data();
    void fileIsChecked();
    void fileMissing();
    void modelsAreAsTheDevkitNeedsThem();
};

void TestDatabase::directorIsTheOnlyOne()
{
    QVERIFY(GetIDBDirector() != nullptr);
    QCOMPARE(GetIDBDirector(), GetIDBDirector());
    QVERIFY(GetIDBDirector()->GetDB() != nullptr);
}

void TestDatabase::objectIsThereOnceLoaded()
{
    QVERIFY(addObject(bridgeRecord()));
    QVERIFY(object(bridgeId()) == nullptr);
    QVERIFY(database().LoadObject(bridgeId()));
    QVERIFY(object(bridgeId()) != nullptr);
    QVERIFY(database().LoadObject(bridgeId()));
}

void TestDatabase::objectIsFoundByTheWholeId_data()
{
    QTest::addColumn<int>("field");
    QTest::newRow("first group") << 0;
    QTest::newRow("second group") << 1;
    QTest::newRow("third group") << 2;
    QTest::newRow("first byte") << 3;
    QTest::newRow("last byte") << 4;
    QTest::newRow("text") << 5;
}

void TestDatabase::objectIsFoundByTheWholeId()
{
    QFETCH(const int, field);
    QVERIFY(addObject(bridgeRecord()));
    QVERIFY(database().LoadObject(bridgeId()));
    VLDBId id = bridgeId();
    switch (field) {
    case 0:
        ++id.data1;
        break;
    case 1:
        ++id.data2;
        break;
    case 2:
        ++id.data3;
        break;
    case 3:
        ++id.data4[0];
        break;
    case 4:
        ++id.data4[7];
        break;
    default:
        id.text = L"none";
    }
    QVERIFY(object(id) == nullptr);
    QVERIFY(object(bridgeId()) != nullptr);
}

void TestDatabase::objectTellsItsData()
{
    QVERIFY(addObject(bridgeRecord()));
    database().LoadObject(bridgeId());
    IVLDBObject* found = object(bridgeId());
    QCOMPARE(found->GetId().data1, 0x0a1b2c3du);
    QCOMPARE(found->GetId().data4[7], std::uint8_t{0xf9});
    QVERIFY(found->GetId().text.empty());
    QVERIFY(found->GetName() == L"跨江大桥");
    QVERIFY(found->GetTypeName() == L"BIM");
    QVERIFY(found->GetProperty(L"owner") == L"远景");
    QVERIFY(found->GetProperty(L"empty").empty());
    QVERIFY(found->GetProperty(L"editor_import_source_type").empty());
}

void TestDatabase::objectHasNoChildren()
{
    QVERIFY(addObject({"alone", "独立", "BIM", {}, {}}));
    database().LoadObject(textId(L"alone"));
    QVERIFY(object(textId(L"alone"))->GetChildren() != nullptr);
    QVERIFY(childIds(object(textId(L"alone"))).empty());
}

void TestDatabase::childrenComeWithTheirParent()
{
    QVERIFY(addObject(bridgeRecord()));
    QVERIFY(object(textId(L"pier-1")) == nullptr);
    database().LoadObject(bridgeId());
    const std::vector<VLDBId> ids = childIds(object(bridgeId()));
    QCOMPARE(ids.size(), std::size_t(1));
    QVERIFY(ids.front().text == L"pier-1");
    IVLDBObject* pier = object(ids.front());
    QVERIFY(pier != nullptr);
    QVERIFY(pier->GetName() == L"桥墩");
    QVERIFY(pier->GetProperty(L"editor_import_source_type") == L"fbx");
    QVERIFY(object(textId(L"drawing")) != nullptr);
}

void TestDatabase::childIsLoadedAlone()
{
    QVERIFY(addObject(bridgeRecord()));
    QVERIFY(database().LoadObject(textId(L"pier-1")));
    QVERIFY(object(textId(L"pier-1")) != nullptr);
    QVERIFY(object(bridgeId()) == nullptr);
}

void TestDatabase::loadOfWhatIsNotThere()
{
    QVERIFY(!database().LoadObject(bridgeId()));
    QVERIFY(!database().LoadObject(textId(L"none")));
    QVERIFY(!database().LoadObject(VLDBId()));
}

void TestDatabase::scopeIsTheWholeDatabaseOnly()
{
    QVERIFY(addObject(bridgeRecord()));
    database().LoadObject(bridgeId());
    QVERIFY(database().GetObject(bridgeId(), L"elsewhere") == nullptr);
}

void TestDatabase::clearLeavesNothing()
{
    QVERIFY(addObject(bridgeRecord()));
    database().LoadObject(bridgeId());
    clearDatabase();
    QVERIFY(object(bridgeId()) == nullptr);
    QVERIFY(!database().LoadObject(bridgeId()));
    QVERIFY(addObject(bridgeRecord()));
    QVERIFY(object(bridgeId()) == nullptr);
}

void TestDatabase::addIsRefused_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("childId");
    QTest::addColumn<QString>("complaint");
    const QString taken = QString(Bridge).toUpper();
    row("empty", "", "c", "\"\" names no object");
    row("none", "none", "c", "\"none\" names no object");
    row("taken", taken, "c", "there is an object \"" + taken + "\" already");
    row("child taken", "new", "pier-1", "there is an object \"pier-1\" already");
    row("child as its parent", "new", "new", "there is an object \"new\" already");
    row("child without id", "new", "", "\"\" names no object");
}

void TestDatabase::addIsRefused()
{
    QFETCH(const QString, id);
    QFETCH(const QString, childId);
    QVERIFY(addObject(bridgeRecord()));
    const ObjectRecord refused{id, "n", "t", {}, {{childId, "m", "t", {}, {}}}};
    QString error;
    QVERIFY(!addObject(refused, &error));
    QTEST(error, "complaint");
    QVERIFY(!addObject(refused));
    QVERIFY(!database().LoadObject(textId(L"new")));
    QVERIFY(!database().LoadObject(textId(L"c")));
    QVERIFY(database().LoadObject(bridgeId()));
}

namespace {

//! A model file with this content. The destructor removes it.
class ModelFile
{
public:
    explicit ModelFile(const QByteArray& content)
    {
        QFile file(name());
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
    }

    QString name() const { return m_folder.filePath("models.json"); }

private:
    const QTemporaryDir m_folder;
};

} // namespace

void TestDatabase::fileReplacesWhatThereWas()
{
    QVERIFY(addObject(bridgeRecord()));
    const ModelFile file(R"({"objects": [{"id": "a", "name": "甲", "type": "BIM", "properties": {"p": "值"},
                           "children": [{"id": "b", "name": "乙", "type": "DWG"}]}]})");
    QString error;
    QVERIFY2(loadDatabase(file.name(), &error), qPrintable(error));
    QVERIFY(!database().LoadObject(bridgeId()));
    QVERIFY(object(textId(L"a")) == nullptr);
    QVERIFY(database().LoadObject(textId(L"a")));
    QVERIFY(object(textId(L"a"))->GetName() == L"甲");
    QVERIFY(object(textId(L"a"))->GetProperty(L"p") == L"值");
    QVERIFY(object(textId(L"b"))->GetTypeName() == L"DWG");

    QVERIFY(loadDatabase(file.name()));
    QVERIFY(object(textId(L"a")) == nullptr);
}

void TestDatabase::fileIsChecked_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("complaint");
    const auto child = [](const QByteArray& members) {
        return R"({"objects": [{"id": "a", "name": "n", "type": "t", "children": [{)" + members + "}]}]}";
    };
    row("empty", QByteArray(), "no JSON, line 1: ");
    row("no JSON", QByteArray("{\n\"objects\": [,]\n}"), "no JSON, line 2: ");
    row("an array", QByteArray("[]"), "must hold a JSON object");
    row("no objects", QByteArray("{}"), "\"objects\" must be an array");
    row("more than objects", QByteArray(R"({"objects": [], "object": 1})"),
        "the file has an unknown member \"object\"");
    row("a number", QByteArray(R"({"objects": [1]})"), "objects[0] must be an object");
    row("no name", child(R"("id": "b", "type": "t")"), "objects[0]: children[0] needs a text \"name\"");
    row("id no text", child(R"("id": 1, "name": "n", "type": "t")"),
        "objects[0]: children[0] needs a text \"id\"");
    row("empty type", child(R"("id": "b", "name": "n", "type": "")"),
        "objects[0]: children[0] needs a text \"type\"");
    row("misspelt", child(R"("id": "b", "name": "n", "type": "t", "childs": [])"),
        "objects[0]: children[0] has an unknown member \"childs\"");
    row("children", child(R"("id": "b", "name": "n", "type": "t", "children": {})"),
        "objects[0]: children[0]: \"children\" must be an array");
    row("properties", child(R"("id": "b", "name": "n", "type": "t", "properties": [])"),
        "objects[0]: children[0]: properties must be an object");
    row("property", child(R"("id": "b", "name": "n", "type": "t", "properties": {"p": 1})"),
        "objects[0]: children[0]: property \"p\" is no text");
    row("id twice", child(R"("id": "a", "name": "n", "type": "t")"), "there is an object \"a\" already");
}

void TestDatabase::fileIsChecked()
{
    QFETCH(const QByteArray, content);
    QFETCH(const QString, complaint);
    const ModelFile file(content);
    QVERIFY(addObject(bridgeRecord()));
    QString error;
    QVERIFY(!loadDatabase(file.name(), &error));
    QVERIFY2(error.startsWith("model file " + file.name() + ": " + complaint), qPrintable(error));
    QVERIFY(!loadDatabase(file.name()));
    QVERIFY(database().LoadObject(bridgeId()));
    QVERIFY(!database().LoadObject(textId(L"a")));
}

void TestDatabase::fileMissing()
{
    const QTemporaryDir folder;
    QString error;
    QVERIFY(!loadDatabase(folder.filePath("none.json"), &error));
    QVERIFY2(error.startsWith("model file " + folder.filePath("none.json") + ": "), qPrintable(error));
}

//! The devkit's model file has a model with children of each kind: a drawing, an imported model, and others.
void TestDatabase::modelsAreAsTheDevkitNeedsThem()
{
    QString error;
    QVERIFY2(loadDatabase(NELVO_MODELS_FILE, &error), qPrintable(error));
    const VLDBId mixed{0xd68e7dd9, 0xa4f5, 0x5cf0, {0xaa, 0xb7, 0x23, 0x72, 0x81, 0x42, 0xba, 0xbc}, {}};
    QVERIFY(database().LoadObject(mixed));
    int drawings = 0;
    int imports = 0;
    int plain = 0;
    for (const VLDBId& id : childIds(object(mixed))) {
        IVLDBObject* child = object(id);
        const bool isDrawing = child->GetTypeName() == L"DWG";
        const bool isImport = !child->GetProperty(L"editor_import_source_type").empty();
        drawings += isDrawing ? 1 : 0;
        imports += isImport ? 1 : 0;
        plain += isDrawing || isImport ? 0 : 1;
    }
    QCOMPARE(drawings, 1);
    QCOMPARE(imports, 1);
    QCOMPARE(plain, 3);
}

QTEST_GUILESS_MAIN(TestDatabase)
#include "test_database.moc"
