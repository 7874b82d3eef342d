#include "login/logincmdlinemgr.h"

#include "login/loginmgr.h"
#include "platform/handshake.h"
#include "tests/support/messagelog.h"
#include "tests/support/recorders.h"

#include <QGuiApplication>
#include <QtTest>

#include <array>
#include <cstring>

// Replaces the system's part of the handshake and records the order of the calls.

struct NelvoPlugin::SharedMemory {
    std::array<char, 8> bytes{};
    bool canBeMapped = true;
};
struct NelvoPlugin::NamedEvent {
};

namespace {

NelvoPlugin::SharedMemory block;
NelvoPlugin::NamedEvent event;
bool blockIsThere = true;
bool eventIsThere = true;
//! The calls of these functions and of the observers, in order.
QStringList calls;

} // namespace

NelvoPlugin::SharedMemory* NelvoPlugin::openSharedMemory(const std::wstring& name)
{
    calls.append(QStringLiteral("open block ") + QString::fromStdWString(name));
    return blockIsThere ? &block : nullptr;
}

char* NelvoPlugin::mapSharedMemory(SharedMemory* memory)
{
    calls.append(QStringLiteral("map block"));
    return memory->canBeMapped ? memory->bytes.data() : nullptr;
}

NelvoPlugin::NamedEvent* NelvoPlugin::openEvent(const std::wstring& name)
{
    calls.append(QStringLiteral("open event ") + QString::fromStdWString(name));
    return eventIsThere ? &event : nullptr;
}

void NelvoPlugin::setEvent(NamedEvent* /*event*/)
{
    calls.append(QStringLiteral("set event over \"%1\"").arg(QLatin1String(block.bytes.data())));
}

namespace {

//! No service listens at this address.
const char* const Argument = "lina$$x$$127.0.0.1:1$$E$$B$$5";

} // namespace

//! The calling program is notified last: first the text is written, then the event is set.
class TestLoginCmdLineMgrOrder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void eventIsSetBehindTheText();
    void missingBlockIsNotMapped();
    void blockThatCannotBeMappedStillSetsTheEvent();
    void missingEventIsNotSet();
    void callerHearsAfterTheObservers();
};

void TestLoginCmdLineMgrOrder::init()
{
    block = {};
    blockIsThere = true;
    eventIsThere = true;
    calls.clear();
}

namespace {

void notifyCaller()
{
    CLoginCmdLineMgr manager;
    manager.m_eventName = L"E";
    manager.m_mappingName = L"B";
    manager.notifyCaller();
}

} // namespace

void TestLoginCmdLineMgrOrder::eventIsSetBehindTheText()
{
    notifyCaller();
    QCOMPARE(calls, (QStringList{"open block B", "map block", "open event E", "set event over \"1\""}));
}

void TestLoginCmdLineMgrOrder::missingBlockIsNotMapped()
{
    blockIsThere = false;
    notifyCaller();
    QCOMPARE(calls, (QStringList{"open block B", "open event E", "set event over \"\""}));
}

void TestLoginCmdLineMgrOrder::blockThatCannotBeMappedStillSetsTheEvent()
{
    block.canBeMapped = false;
    notifyCaller();
    QCOMPARE(calls, (QStringList{"open block B", "map block", "open event E", "set event over \"\""}));
}

void TestLoginCmdLineMgrOrder::missingEventIsNotSet()
{
    eventIsThere = false;
    notifyCaller();
    QCOMPARE(calls, (QStringList{"open block B", "map block", "open event E"}));
    QCOMPARE(block.bytes[0], '1');
}

//! The sign-in fails here. The remaining steps still run and notify the calling program.
void TestLoginCmdLineMgrOrder::callerHearsAfterTheObservers()
{
    const TestSupport::MessageLog log;
    NelvoPlugin::CLoginMgr manager;
    TestSupport::LoginRecorder observer;
    observer.whenSucceeded = [] { calls.append(QStringLiteral("succeeded")); };
    observer.whenFailed = [] { calls.append(QStringLiteral("failed")); };
    manager.GetLoginActor()->Attach(&observer);
    manager.Start();
    QCOMPARE(calls, (QStringList{"failed", "succeeded", "open block B", "map block", "open event E",
                                 "set event over \"1\""}));
}

int main(int argc, char** argv)
{
    QByteArray argument(Argument);
    std::array<char*, 3> arguments{argv[0], argument.data(), nullptr};
    int count = 2;
    const QGuiApplication application(count, arguments.data());
    TestLoginCmdLineMgrOrder test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_logincmdlinemgr_order.moc"
