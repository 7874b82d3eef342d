#include "bim/bimrecord.h"

#include <QJsonDocument>
#include <QtTest>

using NelvoPlugin::bimRecord;
using NelvoPlugin::dwgRecord;

namespace {

QJsonObject object(const QByteArray& json)
{
    return QJsonDocument::fromJson(json).object();
}

} // namespace

class TestBimRecord : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordOfABimRow();
    void recordOfADwgRow();
    void emptyRowGivesDefaults();
    void numbersSentAsTextReadAsZero();
    void sizesBeyondTwoGigabytes();
    void brokenNumbersReadAsZero();
    void professions_data();
    void professions();
};

void TestBimRecord::recordOfABimRow()
{
    const QJsonObject row = object(R"({"deptId":"d1","nelvo3dId":"g1","ppName":"一号楼","ppid":7,
        "projectSize":2048,"projType":4,"dwgName":"not this","other":1})");
    QCOMPARE(bimRecord(row), object(R"({"deptId":"d1","guid":"g1","name":"一号楼","ppid":7,"size":2048,
        "profession":4,"profImg":"qrc:/NelvoPlugin/qmls/images/profession_4.png","profTipText":"Revit"})"));
}

void TestBimRecord::recordOfADwgRow()
{
    const QJsonObject row = object(R"({"deptId":"d1","nelvo3dId":"g1","dwgName":"总平面图","ppid":7,
        "projectSize":2048,"projType":4,"ppName":"not this"})");
    const QJsonObject record = dwgRecord(row);
    QCOMPARE(record, object(R"({"deptId":"d1","guid":"g1","name":"总平面图","ppid":7,"profession":4,
        "profImg":"","profTipText":"DWG"})"));
    QVERIFY(!record.contains(QStringLiteral("size")));
}

void TestBimRecord::emptyRowGivesDefaults()
{
    QCOMPARE(bimRecord({}), object(R"({"deptId":"","guid":"","name":"","ppid":0,"size":0,"profession":0,
        "profImg":"qrc:/NelvoPlugin/qmls/images/profession_other.png","profTipText":"其他类型"})"));
    QCOMPARE(dwgRecord({}), object(R"({"deptId":"","guid":"","name":"","ppid":0,"profession":0,
        "profImg":"","profTipText":"DWG"})"));
}

void TestBimRecord::numbersSentAsTextReadAsZero()
{
    const QJsonObject record = bimRecord(object(R"({"ppid":"7","projectSize":"2048","projType":"4"})"));
    for (const char* key : {"ppid", "size", "profession"})
        QCOMPARE(record.value(QLatin1String(key)), QJsonValue(0));
    QCOMPARE(record.value(QStringLiteral("profTipText")).toString(), QStringLiteral("其他类型"));
}

void TestBimRecord::sizesBeyondTwoGigabytes()
{
    const QJsonObject record = bimRecord(object(R"({"projectSize":3221225472})"));
    QCOMPARE(record.value(QStringLiteral("size")).toDouble(), 3221225472.0);
}

void TestBimRecord::brokenNumbersReadAsZero()
{
    const QJsonObject record = bimRecord(object(R"({"ppid":1.5,"projectSize":1e300})"));
    QCOMPARE(record.value(QStringLiteral("ppid")), QJsonValue(0));
    QCOMPARE(record.value(QStringLiteral("size")), QJsonValue(0));
}

void TestBimRecord::professions_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QString>("image");
    QTest::addColumn<QString>("label");
    const auto known = [](int type, const char* label) {
        QTest::addRow("%d", type) << QByteArray::number(type) << QStringLiteral("profession_%1.png").arg(type)
                                  << QString::fromUtf8(label);
    };
    known(1, "土建预算");
    known(2, "安装预算");
    known(3, "钢筋预算");
    known(4, "Revit");
    known(5, "Tekla");
    known(7, "Dorvi客户端");
    known(9, "场布预算");
    known(10, "Civil3D");
    known(11, "Bentley");
    known(12, "Rhino");
    for (const char* type : {"6", "8", "0", "13", "-1", "null", "4.5", "\"4\""})
        QTest::addRow("%s", type) << QByteArray(type) << QStringLiteral("profession_other.png")
                                  << QStringLiteral("其他类型");
}

void TestBimRecord::professions()
{
    QFETCH(QByteArray, type);
    QFETCH(QString, image);
    QFETCH(QString, label);
    const QJsonObject record = bimRecord(object("{\"projType\":" + type + "}"));
    QCOMPARE(record.value(QStringLiteral("profImg")).toString(),
             QStringLiteral("qrc:/NelvoPlugin/qmls/images/") + image);
    QCOMPARE(record.value(QStringLiteral("profTipText")).toString(), label);
}

QTEST_APPLESS_MAIN(TestBimRecord)
#include "test_bimrecord.moc"
