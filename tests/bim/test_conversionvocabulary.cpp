#include "bim/conversionvocabulary.h"

#include <QtTest>

using namespace NelvoPlugin;

class TestConversionVocabulary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyWordIsItsOwnName();
};

#define COMPARE_TO_NAME(word) QCOMPARE(word, QStringLiteral(#word))

void TestConversionVocabulary::everyWordIsItsOwnName()
{
    COMPARE_TO_NAME(BVConverter);
    COMPARE_TO_NAME(convertState);
    COMPARE_TO_NAME(convertPds);
    COMPARE_TO_NAME(convertVlg);
    COMPARE_TO_NAME(convertDwg);
    COMPARE_TO_NAME(convertFBX);
    COMPARE_TO_NAME(dwgFile);
    COMPARE_TO_NAME(fbxFile);
    COMPARE_TO_NAME(pdsFile);
    COMPARE_TO_NAME(gltfFile);
    COMPARE_TO_NAME(levelModel);
    COMPARE_TO_NAME(levelPerformanceFirst);
    COMPARE_TO_NAME(outlineModel);
    COMPARE_TO_NAME(bimGuid);
    COMPARE_TO_NAME(compGuid);
    COMPARE_TO_NAME(asComp);
    COMPARE_TO_NAME(uid);
    QVERIFY(editor_import_source_type == L"editor_import_source_type");
}

QTEST_APPLESS_MAIN(TestConversionVocabulary)
#include "test_conversionvocabulary.moc"
