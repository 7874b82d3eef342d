#include "bim/vldbid.h"

#include <QtTest>

#include <algorithm>

using NelvoPlugin::toVldbId;
using NelvoPlugin::vldbIdText;
using VLSmartDB::VLDBId;

namespace {

const std::wstring Guid = L"0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9";

bool hasZeroFields(const VLDBId& id)
{
    return id.data1 == 0 && id.data2 == 0 && id.data3 == 0 &&
           std::all_of(std::begin(id.data4), std::end(id.data4), [](quint8 byte) { return byte == 0; });
}

std::wstring replaced(std::size_t position, const std::wstring& characters)
{
    std::wstring text = Guid;
    return text.replace(position, characters.size(), characters);
}

} // namespace

class TestVldbId : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fieldsOfAGuid();
    void anyCharacterSeparatesTheGroups();
    void upperCaseComesBackInLowerCase();
    void guidComesBackAsItWas();
    void badDigitMakesATextId_data();
    void badDigitMakesATextId();
    void otherLengthsMakeATextId();
    void whatTheNumberReaderLetsPass();
    void emptyTextIsNoObject();
    void textIdComesBackAsItWas();
    void wordNoneIsNoObject();
    void zeroGuidIsAGuid();
};

void TestVldbId::fieldsOfAGuid()
{
    const VLDBId id = toVldbId(Guid);
    QCOMPARE(id.data1, 0x0a1b2c3dU);
    QCOMPARE(int(id.data2), 0x4e5f);
    QCOMPARE(int(id.data3), 0x6071);
    const QVector<int> tail(std::begin(id.data4), std::end(id.data4));
    QCOMPARE(tail, (QVector<int>{0x82, 0x93, 0xa4, 0xb5, 0xc6, 0xd7, 0xe8, 0xf9}));
    QVERIFY(id.text.empty());
}

void TestVldbId::anyCharacterSeparatesTheGroups()
{
    std::wstring text = Guid;
    const std::wstring separators = L"x 中/";
    std::size_t next = 0;
    for (const std::size_t position : {8, 13, 18, 23})
        text[position] = separators[next++];
    const VLDBId id = toVldbId(text);
    QVERIFY(id.text.empty());
    QVERIFY(vldbIdText(id) == Guid);
}

void TestVldbId::upperCaseComesBackInLowerCase()
{
    QVERIFY(vldbIdText(toVldbId(L"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9")) == Guid);
}

void TestVldbId::guidComesBackAsItWas()
{
    QVERIFY(vldbIdText(toVldbId(Guid)) == Guid);
}

void TestVldbId::badDigitMakesATextId_data()
{
    QTest::addColumn<int>("position");
    for (const int position : {0, 7, 9, 12, 14, 17, 19, 20, 21, 24, 26, 28, 30, 32, 34, 35})
        QTest::addRow("%d", position) << position;
}

void TestVldbId::badDigitMakesATextId()
{
    QFETCH(int, position);
    const std::wstring text = replaced(std::size_t(position), L"g");
    const VLDBId id = toVldbId(text);
    QVERIFY(id.text == text);
    QVERIFY(hasZeroFields(id));
    QVERIFY(vldbIdText(id) == text);
}

void TestVldbId::otherLengthsMakeATextId()
{
    for (const std::wstring& text :
         {Guid.substr(0, 35), Guid + L"0", L"{" + Guid + L"}", std::wstring(L"7")}) {
        const VLDBId id = toVldbId(text);
        QVERIFY(id.text == text);
        QVERIFY(hasZeroFields(id));
    }
}

void TestVldbId::whatTheNumberReaderLetsPass()
{
    QCOMPARE(toVldbId(replaced(0, L"      1f")).data1, 0x1fU);
    QCOMPARE(toVldbId(replaced(0, L"0x00002a")).data1, 0x2aU);
    QCOMPARE(toVldbId(replaced(0, L"+000002a")).data1, 0x2aU);
    // For a minus sign, the reader returns the two's complement. The field keeps its lowest bits.
    const VLDBId negative = toVldbId(replaced(9, L"-001"));
    QVERIFY(negative.text.empty());
    QCOMPARE(int(negative.data2), 0xffff);
    QCOMPARE(int(toVldbId(replaced(19, L"-1")).data4[0]), 0xff);
    // Blanks alone are no number, and neither is a prefix without a digit.
    QVERIFY(!toVldbId(replaced(0, L"        ")).text.empty());
    QVERIFY(!toVldbId(replaced(19, L"0x")).text.empty());
    // The reader stops at a blank after the digits.
    QVERIFY(!toVldbId(replaced(7, L" ")).text.empty());
}

void TestVldbId::emptyTextIsNoObject()
{
    const VLDBId id = toVldbId({});
    QVERIFY(id.text == L"none");
    QVERIFY(hasZeroFields(id));
    QVERIFY(vldbIdText(id).empty());
}

void TestVldbId::textIdComesBackAsItWas()
{
    QVERIFY(vldbIdText(toVldbId(L"图纸-7")) == L"图纸-7");
}

void TestVldbId::wordNoneIsNoObject()
{
    QVERIFY(vldbIdText(toVldbId(L"none")).empty());
    QVERIFY(vldbIdText(toVldbId(L"None")) == L"None");
}

void TestVldbId::zeroGuidIsAGuid()
{
    const std::wstring zero = L"00000000-0000-0000-0000-000000000000";
    QVERIFY(toVldbId(zero).text.empty());
    QVERIFY(vldbIdText(toVldbId(zero)) == zero);
}

QTEST_APPLESS_MAIN(TestVldbId)
#include "test_vldbid.moc"
