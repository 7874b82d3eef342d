#include "launch/launcher.h"

#include "commandline/commandline.h"
#include "launch/callerhandshake.h"

#include <QDeadlineTimer>
#include <QProcess>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <system_error>

namespace NelvoDevkit {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds LookEvery{50};
constexpr milliseconds EndPatience{10000};

volatile std::sig_atomic_t interrupted = 0;

void interrupt(int /*signal*/)
{
    interrupted = 1;
}

//! The names would outlive this process on some systems, so an interruption must run the destructors too.
void heedInterruptions()
{
    std::signal(SIGINT, &interrupt);
    std::signal(SIGTERM, &interrupt);
}

void say(const QString& text)
{
    output() << "nelvo-launch: " << text << Qt::endl;
}

void complain(const QString& text)
{
    errorOutput() << "nelvo-launch: " << text << Qt::endl;
}

//! \brief The host process, which shares this program's terminal.
class HostProcess final : private QProcess
{
public:
    HostProcess()
    {
        setProcessChannelMode(ForwardedChannels);
        setInputChannelMode(ForwardedInputChannel);
    }

    bool start(const QString& program, const QString& argument)
    {
        QProcess::start(program, {argument}, QIODevice::NotOpen);
        return waitForStarted(-1);
    }
    using QProcess::errorString;
    qint64 id() const { return processId(); }
    bool hasEnded(milliseconds patience = milliseconds(0))
    {
        return state() == NotRunning || waitForFinished(static_cast<int>(patience.count()));
    }

    //! Prevents the destructor from ending the running process.
    void leave() { setProcessState(NotRunning); }
    void end()
    {
        terminate();
        if (hasEnded(EndPatience))
            return;
        kill();
        hasEnded(EndPatience);
    }
    //! The exit status of a host that has ended; a crash is a failure.
    int status() const { return exitStatus() == NormalExit ? exitCode() : EXIT_FAILURE; }
};

LaunchStatus awaitWord(const CallerHandshake& handshake, HostProcess& host, milliseconds patience)
{
    const QDeadlineTimer deadline(patience);
    for (;;) {
        // A host may set the event and end immediately, so the event is checked once more after the end.
        const bool ended = host.hasEnded();
        if (handshake.wait(ended ? milliseconds(0) : LookEvery))
            return LaunchStatus::Signalled;
        if (ended)
            return LaunchStatus::HostEnded;
        if (interrupted != 0)
            return LaunchStatus::Interrupted;
        if (deadline.hasExpired())
            return LaunchStatus::TimedOut;
    }
}

void report(LaunchStatus status, const CallerHandshake& handshake, const LaunchOptions& options)
{
    switch (status) {
    case LaunchStatus::Signalled:
        say(QStringLiteral(
                "the host says \"%1\": the sign-in has run; whether it went well shows in the host")
                .arg(QString::fromStdString(handshake.text())));
        break;
    case LaunchStatus::TimedOut:
        complain(QStringLiteral("no word from the host within %1 seconds").arg(options.patience.count()));
        break;
    case LaunchStatus::HostEnded:
        complain(QStringLiteral("the host ended without a word"));
        break;
    default:
        complain(QStringLiteral("interrupted"));
        break;
    }
}

//! Waits until the host ends. Returns false if the user interrupts the wait.
bool awaitEnd(HostProcess& host)
{
    while (!host.hasEnded(LookEvery)) {
        if (interrupted != 0)
            return false;
    }
    return true;
}

//! Handles the host, ended or not, as the options require. Returns the exit status of the program.
int partWith(HostProcess& host, LaunchStatus status, LaunchOptions::Afterwards afterwards)
{
    const bool isAwaited =
        afterwards == LaunchOptions::Afterwards::Await && status == LaunchStatus::Signalled;
    if (isAwaited && !awaitEnd(host))
        status = LaunchStatus::Interrupted;
    if (!host.hasEnded() && afterwards == LaunchOptions::Afterwards::Leave) {
        say(QStringLiteral("the host stays, as process %1").arg(host.id()));
        host.leave();
        return static_cast<int>(status);
    }
    if (!host.hasEnded())
        host.end();
    say(QStringLiteral("the host has ended with status %1").arg(host.status()));
    return isAwaited && status == LaunchStatus::Signalled ? host.status() : static_cast<int>(status);
}

} // namespace

int launch(const LaunchOptions& options)
{
    heedInterruptions();
    try {
        const CallerHandshake handshake(options.eventName.toStdWString(), options.mappingName.toStdWString());
        HostProcess host;
        if (!host.start(options.host, options.hostArgument())) {
            throw Failure{QStringLiteral("cannot start %1: %2").arg(options.host, host.errorString()),
                          static_cast<int>(LaunchStatus::NotStarted)};
        }
        const LaunchStatus status = awaitWord(handshake, host, options.patience);
        report(status, handshake, options);
        return partWith(host, status, options.afterwards);
    } catch (const std::system_error& error) {
        throw Failure{QString::fromLocal8Bit(error.what()), static_cast<int>(LaunchStatus::NotStarted)};
    }
}

} // namespace NelvoDevkit
