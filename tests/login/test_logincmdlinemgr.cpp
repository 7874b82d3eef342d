#include "launch/callerhandshake.h"

#include "login/logincmdlinemgr.h"
#include "tests/support/row.h"

#include <QUuid>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <type_traits>

using NelvoDevkit::CallerHandshake;
using TestSupport::row;
using Block = std::array<char, CallerHandshake::BlockSize>;

namespace {

constexpr std::chrono::milliseconds Now{0};
const Block Untouched{'x', 'x', 'x', 'x', 'x', 'x', 'x', 'x'};

//! Names that no other test or program uses.
struct Names {
    std::wstring unique = QUuid::createUuid().toString(QUuid::WithoutBraces).toStdWString();
    std::wstring event = L"event-" + unique;
    std::wstring block = L"block-" + unique;
};

CLoginCmdLineMgr managerFor(const std::wstring& event, const std::wstring& block)
{
    CLoginCmdLineMgr manager;
    manager.m_eventName = event;
    manager.m_mappingName = block;
    return manager;
}

bool isEmpty(const CLoginCmdLineMgr& manager)
{
    return manager.m_userName.empty() && manager.m_password.empty() && manager.m_serverUrl.empty() &&
           manager.m_eventName.empty() && manager.m_mappingName.empty() && manager.m_enterpriseId == 0 &&
           manager.m_reservedText.empty();
}

} // namespace

class TestLoginCmdLineMgr : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void destructorIsVirtual();
    void membersStandInTheOrderOfTheArgument();
    void freshOneIsEmpty();

    void sixPartsFillTheMembers();
    void otherNumbersOfPartsFillNothing_data();
    void otherNumbersOfPartsFillNothing();
    void emptyPartsKeepTheirPlace();
    void allPartsMayBeEmpty();
    void separatorIsTakenFromTheLeft();
    void charactersPassUnchanged();
    void addressGetsAScheme_data();
    void addressGetsAScheme();
    void enterpriseId_data();
    void enterpriseId();

    void tellsTheCaller();
    void writesTwoBytesOnly();
    void emptyNamesTellNothing_data();
    void emptyNamesTellNothing();
    void missingBlockStillSetsTheEvent();
    void missingEventStillWritesTheBlock();
    void nobodyThereIsQuiet();
};

void TestLoginCmdLineMgr::destructorIsVirtual()
{
    QVERIFY(std::has_virtual_destructor_v<CLoginCmdLineMgr>);
}

void TestLoginCmdLineMgr::membersStandInTheOrderOfTheArgument()
{
    const CLoginCmdLineMgr manager;
    const QVector<const void*> members{
        &manager.m_userName,    &manager.m_password,     &manager.m_serverUrl,   &manager.m_eventName,
        &manager.m_mappingName, &manager.m_enterpriseId, &manager.m_reservedText};
    QVERIFY(std::is_sorted(members.begin(), members.end(), std::less<>()));
}

void TestLoginCmdLineMgr::freshOneIsEmpty()
{
    QVERIFY(isEmpty(CLoginCmdLineMgr()));
}

void TestLoginCmdLineMgr::sixPartsFillTheMembers()
{
    CLoginCmdLineMgr manager;
    manager.parseCommandLine(
        L"lina$$e10adc3949ba59abbe56e057f20f883e$$http://server:8080$$an event$$a mapping$$1003");
    QVERIFY(manager.m_userName == L"lina");
    QVERIFY(manager.m_password == L"e10adc3949ba59abbe56e057f20f883e");
    QVERIFY(manager.m_serverUrl == L"http://server:8080");
    QVERIFY(manager.m_eventName == L"an event");
    QVERIFY(manager.m_mappingName == L"a mapping");
    QCOMPARE(manager.m_enterpriseId, 1003);
    QVERIFY(manager.m_reservedText.empty());
}

void TestLoginCmdLineMgr::otherNumbersOfPartsFillNothing_data()
{
    QTest::addColumn<QString>("argument");
    QTest::newRow("empty") << QString();
    QTest::newRow("one") << QStringLiteral("lina");
    QTest::newRow("five") << QStringLiteral("lina$$md5$$server$$event$$mapping");
    QTest::newRow("seven") << QStringLiteral("lina$$md5$$server$$event$$mapping$$1$$");
    QTest::newRow("single separators") << QStringLiteral("lina$md5$server$event$mapping$1");
}

void TestLoginCmdLineMgr::otherNumbersOfPartsFillNothing()
{
    QFETCH(QString, argument);
    CLoginCmdLineMgr manager;
    manager.parseCommandLine(argument.toStdWString());
    QVERIFY(isEmpty(manager));
}

void TestLoginCmdLineMgr::emptyPartsKeepTheirPlace()
{
    CLoginCmdLineMgr manager;
    manager.parseCommandLine(L"lina$$$$http://server$$$$$$7");
    QVERIFY(manager.m_userName == L"lina");
    QVERIFY(manager.m_password.empty());
    QVERIFY(manager.m_serverUrl == L"http://server");
    QVERIFY(manager.m_eventName.empty());
    QVERIFY(manager.m_mappingName.empty());
    QCOMPARE(manager.m_enterpriseId, 7);
}

void TestLoginCmdLineMgr::allPartsMayBeEmpty()
{
    CLoginCmdLineMgr manager;
    manager.parseCommandLine(L"$$$$$$$$$$");
    QVERIFY(manager.m_userName.empty());
    QVERIFY(manager.m_serverUrl == L"http://");
    QCOMPARE(manager.m_enterpriseId, 0);
}

void TestLoginCmdLineMgr::separatorIsTakenFromTheLeft()
{
    CLoginCmdLineMgr manager;
    manager.parseCommandLine(L"lina$$$md5$$server$$event$$mapping$$1");
    QVERIFY(manager.m_userName == L"lina");
    QVERIFY(manager.m_password == L"$md5");
}

void TestLoginCmdLineMgr::charactersPassUnchanged()
{
    CLoginCmdLineMgr manager;
    const std::wstring user = QStringLiteral("陈 \"晓明\"% \U0001F3D7").toStdWString();
    const std::wstring event = QStringLiteral("Local\\事件").toStdWString();
    manager.parseCommandLine(user + L"$$clear password$$s$$" + event + L"$$m$$1");
    QVERIFY(manager.m_userName == user);
    QVERIFY(manager.m_password == L"clear password");
    QVERIFY(manager.m_eventName == event);
}

void TestLoginCmdLineMgr::addressGetsAScheme_data()
{
    QTest::addColumn<QString>("part");
    QTest::addColumn<QString>("address");
    row("http", "http://s:80", "http://s:80");
    row("https", "https://s", "https://s");
    row("host and port", "10.0.0.1:8080", "http://10.0.0.1:8080");
    row("upper case", "HTTP://s", "http://HTTP://s");
    row("upper case https", "Https://s", "http://Https://s");
    row("another scheme", "ftp://s", "http://ftp://s");
    row("scheme without slashes", "http:s", "http://http:s");
    row("scheme further on", " http://s", "http:// http://s");
    row("empty", QString(), "http://");
}

void TestLoginCmdLineMgr::addressGetsAScheme()
{
    QFETCH(QString, part);
    QFETCH(QString, address);
    CLoginCmdLineMgr manager;
    manager.parseCommandLine(L"u$$p$$" + part.toStdWString() + L"$$e$$m$$1");
    QCOMPARE(QString::fromStdWString(manager.m_serverUrl), address);
}

void TestLoginCmdLineMgr::enterpriseId_data()
{
    QTest::addColumn<QString>("part");
    QTest::addColumn<int>("id");
    QTest::newRow("number") << QStringLiteral("1001") << 1001;
    QTest::newRow("negative") << QStringLiteral("-5") << -5;
    QTest::newRow("largest") << QStringLiteral("2147483647") << 2147483647;
    QTest::newRow("too large") << QStringLiteral("2147483648") << 0;
    QTest::newRow("no number") << QStringLiteral("first") << 0;
    QTest::newRow("hexadecimal") << QStringLiteral("0x10") << 0;
    QTest::newRow("leading zero") << QStringLiteral("010") << 10;
    QTest::newRow("fraction") << QStringLiteral("1.5") << 0;
    QTest::newRow("empty") << QString() << 0;
}

void TestLoginCmdLineMgr::enterpriseId()
{
    QFETCH(QString, part);
    QFETCH(int, id);
    CLoginCmdLineMgr manager;
    manager.parseCommandLine(L"u$$p$$s$$e$$m$$" + part.toStdWString());
    QCOMPARE(manager.m_enterpriseId, id);
}

void TestLoginCmdLineMgr::tellsTheCaller()
{
    const Names names;
    const CallerHandshake caller(names.event, names.block);
    QVERIFY(!caller.wait(Now));
    managerFor(names.event, names.block).notifyCaller();
    QVERIFY(caller.wait(Now));
    QCOMPARE(caller.text(), std::string("1"));
}

//! Writes the text and its NUL. The rest of the block does not change.
void TestLoginCmdLineMgr::writesTwoBytesOnly()
{
    const Names names;
    CallerHandshake caller(names.event, names.block);
    caller.fillBlock(Untouched);
    managerFor(names.event, names.block).notifyCaller();
    QVERIFY(caller.block() == (Block{'1', '\0', 'x', 'x', 'x', 'x', 'x', 'x'}));
}

void TestLoginCmdLineMgr::emptyNamesTellNothing_data()
{
    QTest::addColumn<bool>("namesEvent");
    QTest::addColumn<bool>("namesBlock");
    QTest::newRow("no event") << false << true;
    QTest::newRow("no block") << true << false;
    QTest::newRow("neither") << false << false;
}

void TestLoginCmdLineMgr::emptyNamesTellNothing()
{
    QFETCH(bool, namesEvent);
    QFETCH(bool, namesBlock);
    const Names names;
    CallerHandshake caller(names.event, names.block);
    caller.fillBlock(Untouched);
    managerFor(namesEvent ? names.event : L"", namesBlock ? names.block : L"").notifyCaller();
    QVERIFY(!caller.wait(Now));
    QVERIFY(caller.block() == Untouched);
}

void TestLoginCmdLineMgr::missingBlockStillSetsTheEvent()
{
    const Names names;
    CallerHandshake caller(names.event, names.block);
    caller.fillBlock(Untouched);
    managerFor(names.event, L"no such block").notifyCaller();
    QVERIFY(caller.wait(Now));
    QVERIFY(caller.block() == Untouched);
}

void TestLoginCmdLineMgr::missingEventStillWritesTheBlock()
{
    const Names names;
    const CallerHandshake caller(names.event, names.block);
    managerFor(L"no such event", names.block).notifyCaller();
    QVERIFY(!caller.wait(Now));
    QCOMPARE(caller.text(), std::string("1"));
}

void TestLoginCmdLineMgr::nobodyThereIsQuiet()
{
    const Names names;
    managerFor(names.event, names.block).notifyCaller();
    // notifyCaller has created neither object: if one existed, this constructor would throw.
    const CallerHandshake caller(names.event, names.block);
    QVERIFY(!caller.wait(Now));
    QCOMPARE(caller.text(), std::string());
}

QTEST_GUILESS_MAIN(TestLoginCmdLineMgr)
#include "test_logincmdlinemgr.moc"
