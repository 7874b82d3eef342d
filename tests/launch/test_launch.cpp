#include "launch/callerhandshake.h"
#include "launch/launcher.h"
#include "platform/handshake.h"

#include "tests/support/files.h"
#include "tests/support/systemtexts.h"

#include <QFile>
#include <QLockFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <system_error>

using NelvoDevkit::CallerHandshake;
using NelvoDevkit::LaunchStatus;

namespace {

constexpr int PatienceMs = 60000;

//! Two variables of the child process that acts as the host: its behaviour, and the folder for its files.
const char* const BehaviourVariable = "NELVO_TEST_HOST";
const char* const FolderVariable = "NELVO_TEST_FOLDER";
//! The exit status of a host that ends itself.
constexpr int HostStatus = 7;

const auto LockName = QStringLiteral("/lock");
const auto ArgumentsName = QStringLiteral("/arguments");
const auto EndName = QStringLiteral("/end");

void write(const QString& name, const QByteArray& content)
{
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(name));
}

void tell(const QString& argument)
{
    const QStringList parts = argument.split(QStringLiteral("$$"));
    char* const block =
        NelvoPlugin::mapSharedMemory(NelvoPlugin::openSharedMemory(parts.at(4).toStdWString()));
    std::memcpy(block, "1", sizeof "1");
    NelvoPlugin::setEvent(NelvoPlugin::openEvent(parts.at(3).toStdWString()));
}

//! Runs until the file EndName exists. Also ends after four times the test's patience.
int stay(const QString& folder)
{
    QTimer looking;
    QObject::connect(&looking, &QTimer::timeout, [&folder] {
        if (QFile::exists(folder + EndName))
            QCoreApplication::exit(HostStatus);
    });
    looking.start(10);
    QTimer::singleShot(4 * PatienceMs, QCoreApplication::instance(), &QCoreApplication::quit);
    return QCoreApplication::exec();
}

//! True if no event and no shared memory uses the names.
bool areFree(const QString& event, const QString& mapping)
{
    try {
        const CallerHandshake taken(event.toStdWString(), mapping.toStdWString());
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

//! True on Windows, where a name exists while any process has its object open. POSIX systems remove the name
//! together with its handshake.
bool namesLastAsLongAsTheirObjects(const QString& name)
{
    const std::wstring event = (name + QStringLiteral("-probe-event")).toStdWString();
    const std::wstring mapping = (name + QStringLiteral("-probe-mapping")).toStdWString();
    auto handshake = std::make_unique<CallerHandshake>(event, mapping);
    if (!NelvoPlugin::openEvent(event))
        qFatal("cannot open the event");
    handshake.reset();
    return NelvoPlugin::openEvent(event) != nullptr;
}

int runHost(const QStringList& arguments)
{
    const QString folder = qEnvironmentVariable(FolderVariable);
    const QString behaviour = qEnvironmentVariable(BehaviourVariable);
    QLockFile lock(folder + LockName);
    if (!lock.tryLock(0))
        return EXIT_FAILURE;
    write(folder + ArgumentsName, arguments.mid(1).join(QLatin1Char('\n')).toUtf8());
    if (behaviour.contains(QStringLiteral("tell")))
        tell(arguments.at(1));
    return behaviour.contains(QStringLiteral("stay")) ? stay(folder) : HostStatus;
}

} // namespace

//! Runs nelvo-launch with this program as the host.
class TestLaunch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void hostTellsAndStays();
    void hostGetsOneArgumentOfSixParts();
    void hostIsEndedIfAskedTo();
    void endOfTheHostIsAwaitedIfAskedTo();
    void silentHostIsLeft();
    void silentHostIsEndedWhereItsEndIsAwaited();
    void hostEndsWithoutAWord();
    void wordOfAHostThatEndsAtOnceCounts();
    void namesAreRemoved_data();
    void namesAreRemoved();
    void takenNameIsTold();
    void missingHostIsTold();
    void wrongUsageIsTold();
    void helpIsNoMistake();
    void interruptionCleansUp();
    void interruptionEndsTheAwaitedHost();

private:
    void start(const QString& behaviour, const QStringList& further);
    //! Waits for the end of nelvo-launch, reads its output and returns its exit status.
    int status();
    int run(const QString& behaviour, const QStringList& further = {});
    bool isHostRunning() const;
    QStringList hostArguments() const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QProcess> m_program;
    QString m_output;
    QString m_error;
};

void TestLaunch::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_program = std::make_unique<QProcess>();
}

void TestLaunch::cleanup()
{
    m_program.reset();
    write(m_folder->path() + EndName, {});
    QTRY_VERIFY_WITH_TIMEOUT(!isHostRunning(), PatienceMs);
    m_folder.reset();
}

void TestLaunch::start(const QString& behaviour, const QStringList& further)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(BehaviourVariable), behaviour);
    environment.insert(QLatin1String(FolderVariable), m_folder->path());
    m_program->setProcessEnvironment(environment);
    // A host that continues keeps its output open, so the test reads files instead of pipes.
    m_program->setStandardOutputFile(m_folder->path() + QStringLiteral("/out"));
    m_program->setStandardErrorFile(m_folder->path() + QStringLiteral("/error"));
    const QStringList arguments{
        "--user",      "lina",         "--password", "123456", "--url",
        "http://s:80", "--enterprise", "1003",       "--host", QCoreApplication::applicationFilePath()};
    m_program->start(QStringLiteral(NELVO_LAUNCH_PROGRAM), arguments + further);
}

int TestLaunch::status()
{
    if (!m_program->waitForFinished(PatienceMs) || m_program->exitStatus() != QProcess::NormalExit)
        qFatal("nelvo-launch did not end normally: %s", qPrintable(m_program->errorString()));
    const auto content = [this](const char* name) {
        return QString::fromUtf8(
            TestSupport::withPlainLineEnds(TestSupport::contentOf(m_folder->path() + QLatin1String(name))));
    };
    m_output = content("/out");
    m_error = content("/error");
    return m_program->exitCode();
}

int TestLaunch::run(const QString& behaviour, const QStringList& further)
{
    start(behaviour, further);
    return status();
}

bool TestLaunch::isHostRunning() const
{
    QLockFile lock(m_folder->path() + LockName);
    lock.setStaleLockTime(0);
    return !lock.tryLock(0);
}

QStringList TestLaunch::hostArguments() const
{
    QFile file(m_folder->path() + ArgumentsName);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))
                                          : QStringList();
}

void TestLaunch::hostTellsAndStays()
{
    QCOMPARE(run(QStringLiteral("tell and stay")), int(LaunchStatus::Signalled));
    QVERIFY2(m_output.contains(QStringLiteral("nelvo-launch: the host says \"1\"")), qPrintable(m_output));
    QVERIFY2(m_output.contains(QStringLiteral("nelvo-launch: the host stays, as process ")),
             qPrintable(m_output));
    QCOMPARE(m_error, QString());
    QVERIFY(isHostRunning());
}

void TestLaunch::hostGetsOneArgumentOfSixParts()
{
    QCOMPARE(run(QStringLiteral("end"), {"--event", "事 件", "--mapping", "M"}),
             int(LaunchStatus::HostEnded));
    QCOMPARE(hostArguments(), QStringList{QStringLiteral(
                                  "lina$$e10adc3949ba59abbe56e057f20f883e$$http://s:80$$事 件$$M$$1003")});
}

void TestLaunch::hostIsEndedIfAskedTo()
{
    QCOMPARE(run(QStringLiteral("tell and stay"), {"--end"}), int(LaunchStatus::Signalled));
    QVERIFY2(m_output.contains(QStringLiteral("nelvo-launch: the host has ended")), qPrintable(m_output));
    QVERIFY(!isHostRunning());
}

void TestLaunch::endOfTheHostIsAwaitedIfAskedTo()
{
    start(QStringLiteral("tell and stay"), {"--await-end"});
    QTRY_VERIFY_WITH_TIMEOUT(!hostArguments().isEmpty(), PatienceMs);
    QVERIFY(m_program->state() != QProcess::NotRunning);
    write(m_folder->path() + EndName, {});
    QCOMPARE(status(), HostStatus);
    QVERIFY2(m_output.contains(QStringLiteral("nelvo-launch: the host has ended with status 7")),
             qPrintable(m_output));
}

void TestLaunch::silentHostIsLeft()
{
    QCOMPARE(run(QStringLiteral("stay"), {"--timeout", "1"}), int(LaunchStatus::TimedOut));
    QVERIFY2(m_error.contains(QStringLiteral("nelvo-launch: no word from the host within 1 seconds")),
             qPrintable(m_error));
    QVERIFY2(m_output.contains(QStringLiteral("nelvo-launch: the host stays")), qPrintable(m_output));
}

void TestLaunch::silentHostIsEndedWhereItsEndIsAwaited()
{
    QCOMPARE(run(QStringLiteral("stay"), {"--timeout", "1", "--await-end"}), int(LaunchStatus::TimedOut));
    QVERIFY(!isHostRunning());
}

void TestLaunch::hostEndsWithoutAWord()
{
    QCOMPARE(run(QStringLiteral("end"), {"--timeout", "3600"}), int(LaunchStatus::HostEnded));
    QVERIFY2(m_error.contains(QStringLiteral("nelvo-launch: the host ended without a word")),
             qPrintable(m_error));
    QVERIFY2(m_output.contains(QStringLiteral("nelvo-launch: the host has ended with status 7")),
             qPrintable(m_output));
}

void TestLaunch::wordOfAHostThatEndsAtOnceCounts()
{
    QCOMPARE(run(QStringLiteral("tell and end")), int(LaunchStatus::Signalled));
    QVERIFY2(m_output.contains(QStringLiteral("nelvo-launch: the host says \"1\"")), qPrintable(m_output));
}

void TestLaunch::namesAreRemoved_data()
{
    QTest::addColumn<QString>("behaviour");
    QTest::addColumn<bool>("isOpenInTheHost");
    QTest::newRow("told") << QStringLiteral("tell and stay") << true;
    QTest::newRow("not told") << QStringLiteral("stay") << false;
    QTest::newRow("told and ended") << QStringLiteral("tell and end") << false;
    QTest::newRow("ended") << QStringLiteral("end") << false;
}

void TestLaunch::namesAreRemoved()
{
    QFETCH(const QString, behaviour);
    QFETCH(const bool, isOpenInTheHost);
    const QString event = m_folder->path() + QStringLiteral("-event");
    const QString mapping = m_folder->path() + QStringLiteral("-mapping");
    run(behaviour, {"--timeout", "1", "--event", event, "--mapping", mapping});
    QVERIFY(!hostArguments().isEmpty());
    const bool areKept = isOpenInTheHost && namesLastAsLongAsTheirObjects(m_folder->path());
    QCOMPARE(areFree(event, mapping), !areKept);
    write(m_folder->path() + EndName, {});
    QTRY_VERIFY_WITH_TIMEOUT(areFree(event, mapping), PatienceMs);
}

void TestLaunch::takenNameIsTold()
{
    const QString name = m_folder->path();
    const CallerHandshake taken((name + QStringLiteral("-event")).toStdWString(),
                                (name + QStringLiteral("-mapping")).toStdWString());
    QCOMPARE(run(QStringLiteral("tell and stay"), {"--event", name + QStringLiteral("-event")}),
             int(LaunchStatus::NotStarted));
    QVERIFY2(m_error.contains(QStringLiteral("nelvo-launch: cannot create the event")), qPrintable(m_error));
    QCOMPARE(run(QStringLiteral("tell and stay"), {"--mapping", name + QStringLiteral("-mapping")}),
             int(LaunchStatus::NotStarted));
    QVERIFY2(m_error.contains(QStringLiteral("nelvo-launch: cannot create the shared memory")),
             qPrintable(m_error));
    QVERIFY(hostArguments().isEmpty());
}

void TestLaunch::missingHostIsTold()
{
    const QString missing = m_folder->path() + QStringLiteral("/none");
    QCOMPARE(run({}, {"--host", missing}), int(LaunchStatus::NotStarted));
    QVERIFY2(m_error.contains(QStringLiteral("nelvo-launch: cannot start %1: ").arg(missing)),
             qPrintable(m_error));
}

void TestLaunch::wrongUsageIsTold()
{
    QCOMPARE(run({}, {"--colour", "blue"}), int(LaunchStatus::WrongUsage));
    QVERIFY2(m_error.startsWith(
                 QStringLiteral("nelvo-launch: Unknown option 'colour'; --help lists the options\n")),
             qPrintable(m_error));
}

void TestLaunch::helpIsNoMistake()
{
    QCOMPARE(run({}, {"--help"}), 0);
    QVERIFY2(m_output.contains(QStringLiteral("--md5 <HEX>")), qPrintable(m_output));
}

void TestLaunch::interruptionCleansUp()
{
    if (!NELVO_HAS_SIGNALS)
        QSKIP("Windows sends Ctrl+C to all programs of a console, so the test would also end the host");
    const QString event = m_folder->path() + QStringLiteral("-event");
    start(QStringLiteral("stay"), {"--event", event, "--end"});
    QTRY_VERIFY_WITH_TIMEOUT(!hostArguments().isEmpty(), PatienceMs);
    QVERIFY(NelvoPlugin::openEvent(event.toStdWString()));
    m_program->terminate();
    QCOMPARE(status(), int(LaunchStatus::Interrupted));
    QVERIFY2(m_error.contains(QStringLiteral("nelvo-launch: interrupted")), qPrintable(m_error));
    QVERIFY(!NelvoPlugin::openEvent(event.toStdWString()));
    QVERIFY(!isHostRunning());
}

void TestLaunch::interruptionEndsTheAwaitedHost()
{
    if (!NELVO_HAS_SIGNALS)
        QSKIP("Windows sends Ctrl+C to all programs of a console, so the test would also end the host");
    start(QStringLiteral("tell and stay"), {"--await-end"});
    const auto output = [this] { return TestSupport::contentOf(m_folder->path() + QStringLiteral("/out")); };
    QTRY_VERIFY_WITH_TIMEOUT(output().contains("the host says \"1\""), PatienceMs);
    m_program->terminate();
    QCOMPARE(status(), int(LaunchStatus::Interrupted));
    QVERIFY(!isHostRunning());
}

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    if (qEnvironmentVariableIsSet(BehaviourVariable))
        return runHost(QCoreApplication::arguments());
    TestLaunch test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_launch.moc"
