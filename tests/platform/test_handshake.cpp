#include "launch/callerhandshake.h"
#include "platform/handshake.h"

#include <QProcess>
#include <QUuid>
#include <QtTest>

#include <cstring>
#include <system_error>

using NelvoDevkit::CallerHandshake;

Q_DECLARE_METATYPE(std::wstring)

namespace {

constexpr std::chrono::milliseconds Now{0};
constexpr std::chrono::minutes LongEnough{1};

//! This variable is set in the child process, which acts as the started host.
const char* const TellerVariable = "NELVO_TEST_TELLER";

std::wstring unique(const QString& prefix)
{
    return (prefix + QUuid::createUuid().toString(QUuid::WithoutBraces)).toStdWString();
}

//! The child process: writes its third argument to the block and sets the event. Opens both by their names.
int runTeller(const QStringList& arguments)
{
    const QByteArray text = arguments.at(3).toLatin1();
    NelvoPlugin::SharedMemory* const memory = NelvoPlugin::openSharedMemory(arguments.at(2).toStdWString());
    char* const block = memory ? NelvoPlugin::mapSharedMemory(memory) : nullptr;
    if (block)
        std::memcpy(block, text.constData(), static_cast<std::size_t>(text.size()));
    NelvoPlugin::NamedEvent* const event = NelvoPlugin::openEvent(arguments.at(1).toStdWString());
    if (event)
        NelvoPlugin::setEvent(event);
    return (block ? 0 : 1) + (event ? 0 : 2);
}

//! Starts the child process. The destructor ends it.
class Teller
{
public:
    Teller(const std::wstring& event, const std::wstring& block, const QString& text)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QLatin1String(TellerVariable), QStringLiteral("1"));
        m_process.setProcessEnvironment(environment);
        m_process.start(QCoreApplication::applicationFilePath(),
                        {QString::fromStdWString(event), QString::fromStdWString(block), text});
    }
    //! Waits for the end. 0, plus 1 if the block was not found, plus 2 if the event was not found.
    int status()
    {
        if (!m_process.waitForFinished(60000) || m_process.exitStatus() != QProcess::NormalExit)
            qFatal("the child process failed: %s", qPrintable(m_process.errorString()));
        return m_process.exitCode();
    }

private:
    QProcess m_process;
};

} // namespace

//! Both sides of the handshake, in one process and in two processes.
class TestHandshake : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void blockIsShared();
    void eventWakesTheCaller();
    void eventIsKeptUntilSomebodyWaits();
    void eventWakesOnce();
    void missingBlockIsNull();
    void missingEventIsNull();
    void removedNamesAreGone();
    void openedObjectsOutliveTheirNames();
    void takenNamesAreRefused();
    void failedCallerLeavesNothing();
    void differentNamesAreDifferentObjects_data();
    void differentNamesAreDifferentObjects();
    void namesThatAreNoTextAreDifferentObjects_data();
    void namesThatAreNoTextAreDifferentObjects();
    void anyCharactersMakeAName_data();
    void anyCharactersMakeAName();

    void otherProcessTells();
    void otherProcessWithoutBlock();
    void otherProcessWithoutEvent();
    void otherProcessFindsAnyName_data() { anyCharactersMakeAName_data(); }
    void otherProcessFindsAnyName();
    void whatWasWrittenIsThereWithTheEvent();
};

void TestHandshake::blockIsShared()
{
    const std::wstring name = unique(QStringLiteral("block-"));
    CallerHandshake caller(unique(QStringLiteral("event-")), name);
    caller.fillBlock({'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h'});
    NelvoPlugin::SharedMemory* const memory = NelvoPlugin::openSharedMemory(name);
    QVERIFY(memory);
    char* const block = NelvoPlugin::mapSharedMemory(memory);
    QVERIFY(block);
    QCOMPARE(std::string(block, CallerHandshake::BlockSize), std::string("abcdefgh"));
    block[7] = '!';
    QCOMPARE(caller.block()[7], '!');
}

void TestHandshake::eventWakesTheCaller()
{
    const std::wstring name = unique(QStringLiteral("event-"));
    const CallerHandshake caller(name, unique(QStringLiteral("block-")));
    QVERIFY(!caller.wait(Now));
    QVERIFY(!caller.wait(std::chrono::milliseconds(20)));
    NelvoPlugin::NamedEvent* const event = NelvoPlugin::openEvent(name);
    QVERIFY(event);
    const std::unique_ptr<QThread> thread(QThread::create([event] { NelvoPlugin::setEvent(event); }));
    thread->start();
    QVERIFY(caller.wait(LongEnough));
    QVERIFY(thread->wait());
}

void TestHandshake::eventIsKeptUntilSomebodyWaits()
{
    const std::wstring name = unique(QStringLiteral("event-"));
    const CallerHandshake caller(name, unique(QStringLiteral("block-")));
    NelvoPlugin::setEvent(NelvoPlugin::openEvent(name));
    QVERIFY(caller.wait(Now));
}

void TestHandshake::eventWakesOnce()
{
    const std::wstring name = unique(QStringLiteral("event-"));
    const CallerHandshake caller(name, unique(QStringLiteral("block-")));
    NelvoPlugin::setEvent(NelvoPlugin::openEvent(name));
    QVERIFY(caller.wait(Now));
    QVERIFY(!caller.wait(Now));
}

void TestHandshake::missingBlockIsNull()
{
    QVERIFY(!NelvoPlugin::openSharedMemory(unique(QStringLiteral("block-"))));
    QVERIFY(!NelvoPlugin::openSharedMemory(L""));
}

void TestHandshake::missingEventIsNull()
{
    QVERIFY(!NelvoPlugin::openEvent(unique(QStringLiteral("event-"))));
    QVERIFY(!NelvoPlugin::openEvent(L""));
}

void TestHandshake::removedNamesAreGone()
{
    const std::wstring event = unique(QStringLiteral("event-"));
    const std::wstring block = unique(QStringLiteral("block-"));
    {
        const CallerHandshake caller(event, block);
    }
    QVERIFY(!NelvoPlugin::openEvent(event));
    QVERIFY(!NelvoPlugin::openSharedMemory(block));
    const CallerHandshake again(event, block);
    QVERIFY(NelvoPlugin::openEvent(event));
}

//! If the calling program gives up, a host that has already opened the objects can still use them.
void TestHandshake::openedObjectsOutliveTheirNames()
{
    const std::wstring eventName = unique(QStringLiteral("event-"));
    const std::wstring blockName = unique(QStringLiteral("block-"));
    NelvoPlugin::NamedEvent* event = nullptr;
    NelvoPlugin::SharedMemory* memory = nullptr;
    {
        const CallerHandshake caller(eventName, blockName);
        event = NelvoPlugin::openEvent(eventName);
        memory = NelvoPlugin::openSharedMemory(blockName);
    }
    char* const block = NelvoPlugin::mapSharedMemory(memory);
    QVERIFY(block);
    std::memcpy(block, "1", sizeof "1");
    NelvoPlugin::setEvent(event);
}

void TestHandshake::takenNamesAreRefused()
{
    const std::wstring event = unique(QStringLiteral("event-"));
    const std::wstring block = unique(QStringLiteral("block-"));
    const CallerHandshake caller(event, block);
    QVERIFY_EXCEPTION_THROWN(CallerHandshake(unique(QStringLiteral("event-")), block), std::system_error);
    QVERIFY_EXCEPTION_THROWN(CallerHandshake(event, unique(QStringLiteral("block-"))), std::system_error);
    // The objects of the first caller still exist.
    QVERIFY(NelvoPlugin::openSharedMemory(block));
    QVERIFY(NelvoPlugin::openEvent(event));
}

void TestHandshake::failedCallerLeavesNothing()
{
    const std::wstring event = unique(QStringLiteral("event-"));
    const std::wstring block = unique(QStringLiteral("block-"));
    const CallerHandshake caller(event, unique(QStringLiteral("block-")));
    QVERIFY_EXCEPTION_THROWN(CallerHandshake(event, block), std::system_error);
    QVERIFY(!NelvoPlugin::openSharedMemory(block));
}

void TestHandshake::differentNamesAreDifferentObjects_data()
{
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("other");
    QTest::newRow("case") << QStringLiteral("Name") << QStringLiteral("name");
    QTest::newRow("percent") << QStringLiteral("a/b") << QStringLiteral("a%2Fb");
    QTest::newRow("accent") << QStringLiteral("café") << QStringLiteral("cafe");
    QTest::newRow("space") << QStringLiteral("a b") << QStringLiteral("a+b");
}

void TestHandshake::differentNamesAreDifferentObjects()
{
    QFETCH(QString, one);
    QFETCH(QString, other);
    const std::wstring prefix = unique({}) + L'-';
    const CallerHandshake caller(prefix + one.toStdWString(), prefix + L"block");
    QVERIFY(NelvoPlugin::openEvent(prefix + one.toStdWString()));
    QVERIFY(!NelvoPlugin::openEvent(prefix + other.toStdWString()));
}

void TestHandshake::namesThatAreNoTextAreDifferentObjects_data()
{
    QTest::addColumn<std::wstring>("one");
    QTest::addColumn<std::wstring>("other");
    const std::wstring name = unique({});
    const auto of = [](char16_t unit) { return std::wstring(1, wchar_t(unit)); };
    QTest::newRow("high surrogate, question mark") << name + L'?' << name + of(0xD83C);
    QTest::newRow("low surrogate, question mark") << name + L'?' << name + of(0xDFD7);
    QTest::newRow("surrogate, replacement character") << name + of(0xFFFD) << name + of(0xD83C);
    QTest::newRow("byte order mark, none") << name << of(0xFEFF) + name;
}

void TestHandshake::namesThatAreNoTextAreDifferentObjects()
{
    QFETCH(std::wstring, one);
    QFETCH(std::wstring, other);
    const CallerHandshake caller(one, unique(QStringLiteral("block-")));
    QVERIFY(NelvoPlugin::openEvent(one));
    QVERIFY(!NelvoPlugin::openEvent(other));
}

void TestHandshake::anyCharactersMakeAName_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("Chinese") << QStringLiteral("登录事件");
    QTest::newRow("Latin") << QStringLiteral("größe-é");
    QTest::newRow("beyond the first plane") << QStringLiteral("\U0001F3D7");
    QTest::newRow("space") << QStringLiteral("an event");
    QTest::newRow("slash") << QStringLiteral("a/b");
    QTest::newRow("percent") << QStringLiteral("100%");
    QTest::newRow("plain") << QStringLiteral("AZaz09-._~");
    QTest::newRow("others of ASCII") << QStringLiteral(" !\"#$&'()*+,:;<=>?@[]^`{|}");
    QTest::newRow("control") << QStringLiteral("\t\x7F");
}

void TestHandshake::anyCharactersMakeAName()
{
    QFETCH(QString, name);
    const std::wstring event = unique(QStringLiteral("event-")) + name.toStdWString();
    const std::wstring block = unique(QStringLiteral("block-")) + name.toStdWString();
    const CallerHandshake caller(event, block);
    NelvoPlugin::SharedMemory* const memory = NelvoPlugin::openSharedMemory(block);
    QVERIFY(memory);
    QVERIFY(NelvoPlugin::mapSharedMemory(memory));
    NelvoPlugin::NamedEvent* const opened = NelvoPlugin::openEvent(event);
    QVERIFY(opened);
    NelvoPlugin::setEvent(opened);
    QVERIFY(caller.wait(Now));
}

void TestHandshake::otherProcessTells()
{
    const std::wstring event = unique(QStringLiteral("event-"));
    const std::wstring block = unique(QStringLiteral("block-"));
    const CallerHandshake caller(event, block);
    Teller teller(event, block, QStringLiteral("1"));
    QVERIFY(caller.wait(LongEnough));
    QCOMPARE(caller.text(), std::string("1"));
    QCOMPARE(teller.status(), 0);
}

void TestHandshake::otherProcessWithoutBlock()
{
    const std::wstring event = unique(QStringLiteral("event-"));
    const CallerHandshake caller(event, unique(QStringLiteral("block-")));
    Teller teller(event, unique(QStringLiteral("block-")), QStringLiteral("1"));
    QVERIFY(caller.wait(LongEnough));
    QCOMPARE(caller.text(), std::string());
    QCOMPARE(teller.status(), 1);
}

void TestHandshake::otherProcessWithoutEvent()
{
    const std::wstring block = unique(QStringLiteral("block-"));
    const CallerHandshake caller(unique(QStringLiteral("event-")), block);
    Teller teller(unique(QStringLiteral("event-")), block, QStringLiteral("1"));
    QCOMPARE(teller.status(), 2);
    QVERIFY(!caller.wait(Now));
    QCOMPARE(caller.text(), std::string("1"));
}

void TestHandshake::otherProcessFindsAnyName()
{
    QFETCH(QString, name);
    const std::wstring event = unique(QStringLiteral("event-")) + name.toStdWString();
    const std::wstring block = unique(QStringLiteral("block-")) + name.toStdWString();
    const CallerHandshake caller(event, block);
    Teller teller(event, block, QStringLiteral("1"));
    QCOMPARE(teller.status(), 0);
    QVERIFY(caller.wait(LongEnough));
}

//! The text is written before the event is set, so the woken process reads all of it.
void TestHandshake::whatWasWrittenIsThereWithTheEvent()
{
    for (int round = 0; round < 20; ++round) {
        const std::wstring event = unique(QStringLiteral("event-"));
        const std::wstring block = unique(QStringLiteral("block-"));
        CallerHandshake caller(event, block);
        Teller teller(event, block, QStringLiteral("12345678"));
        QVERIFY(caller.wait(LongEnough));
        const auto content = caller.block();
        QCOMPARE(std::string(content.begin(), content.end()), std::string("12345678"));
    }
}

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    if (qEnvironmentVariableIsSet(TellerVariable))
        return runTeller(QCoreApplication::arguments());
    TestHandshake test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_handshake.moc"
