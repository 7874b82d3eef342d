#include "project/checkedread.h"
#include "project/projectvocabulary.h"

#include <QtTest>

using namespace NelvoPlugin;

class TestProjectVocabulary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void kindsHaveTheirNames();
    void deviceKeys();
    void parameterKeys();
    void checkedReadGivesTheValue();
    void checkedReadOfAMissingKeyThrowsOneText();
};

void TestProjectVocabulary::kindsHaveTheirNames()
{
    QVERIFY(ModelKindName(0) == L"CIM");
    QVERIFY(ModelKindName(1) == L"BIM");
    QCOMPARE(CimModelKind, QStringLiteral("CIM"));
    QCOMPARE(BimModelKind, QStringLiteral("BIM"));
}

void TestProjectVocabulary::deviceKeys()
{
    QCOMPARE(SDK_Propertys, QStringLiteral("SDK_Propertys"));
    QCOMPARE(SDK_LogoID, QStringLiteral("SDK_LogoID"));
    QCOMPARE(SDK_DeviceObject, QStringLiteral("SDK_DeviceObject"));
    QCOMPARE(NelvoEditorSDK_DeviceID, QStringLiteral("NelvoEditorSDK_DeviceID"));
    QCOMPARE(NelvoEditorSDK_DeviceName, QStringLiteral("NelvoEditorSDK_DeviceName"));
    QCOMPARE(NelvoEditorSDK_VendorId, QStringLiteral("NelvoEditorSDK_VendorId"));
    QCOMPARE(NelvoEditorSDK_VendorName, QStringLiteral("NelvoEditorSDK_VendorName"));
    QCOMPARE(NelvoEditorSDK_IotType, QStringLiteral("NelvoEditorSDK_IotType"));
    QCOMPARE(NelvoEditorSDK_IotName, QStringLiteral("NelvoEditorSDK_IotName"));
}

void TestProjectVocabulary::parameterKeys()
{
    using namespace ComponentParameter;
    QCOMPARE((QStringList{AlignType, Group, Image, Name, Parameter, SysName, SubType, Unit, Value}),
             (QStringList{"alignType", "group", "image", "name", "paramter", "sysName", "subType", "unit",
                          "value"}));
}

void TestProjectVocabulary::checkedReadGivesTheValue()
{
    const std::map<std::wstring, int> map{{L"a", 1}};
    QCOMPARE(checkedRead(map, std::wstring(L"a")), 1);
}

void TestProjectVocabulary::checkedReadOfAMissingKeyThrowsOneText()
{
    const std::map<std::wstring, int> map;
    try {
        checkedRead(map, std::wstring(L"a"));
        QFAIL("nothing was thrown");
    } catch (const std::out_of_range& error) {
        QCOMPARE(error.what(), "invalid map<K, T> key");
    }
}

QTEST_APPLESS_MAIN(TestProjectVocabulary)
#include "test_projectvocabulary.moc"
