//! \file
//! \brief Calls of a host when the self-update emits a signal.

#include "tests/e2e/survival/scenario.h"
#include "tests/e2e/updatepages.h"
#include "tests/support/applicationfile.h"
#include "tests/updater/ziparchive.h"

#include <QDir>
#include <QGuiApplication>

namespace Survival {

namespace {

const auto Product = QStringLiteral("86");
const auto PackageName = QStringLiteral("package.zip");

//! A host with an offered release and the files of its update.
class UpdateHost
{
public:
    explicit UpdateHost(Arguments arguments) : m_application(arguments.count, arguments.values)
    {
        QCoreApplication::setOrganizationName(QStringLiteral("NelvoTests"));
        QCoreApplication::setApplicationName(QStringLiteral("survivalhost"));
        for (const auto& directory : {QStringLiteral("/NelvoUpdate"), QStringLiteral("/NelvoUnCompress")})
            QDir(QCoreApplication::applicationDirPath() + directory).removeRecursively();
        ZipArchive archive;
        archive.add("page.txt", QByteArray(100000, 'x'));
        m_services.packages().add(PackageName, archive.bytes());
        m_services.updates().setRelease(
            Product,
            m_services.packageRelease(PackageName, QStringLiteral("1.0.1"), QStringLiteral("notes")));
        m_host = std::make_unique<E2e::PluginHost>(m_services.signInUrl());
    }

    void reactAt(const char* signal, const Reaction& reaction)
    {
        m_trigger = std::make_unique<WhenEmitted>(E2e::updater(), signal, reaction);
    }
    bool hasReacted() const { return m_trigger && m_trigger->hasReacted(); }
    bool hasBatchFile() const { return m_batchFile.exists(); }

    void check() { E2e::checkVersion(m_services.updateUrl(), m_services.updates().token(), Product); }
    //! Returns when the package is complete, or when the host has reacted.
    void download() const
    {
        bool isComplete = false;
        const WhenEmitted end(E2e::updater(), SIGNAL(downloadFinished(QString)), [&] { isComplete = true; });
        E2e::callUpdater("download");
        waitUntil([&] { return isComplete || hasReacted(); }, "the package arrives");
    }

private:
    QGuiApplication m_application;
    const TestSupport::ApplicationFile m_state{QStringLiteral("NelvoUpdateState.dat")};
    const TestSupport::ApplicationFile m_history{QStringLiteral("NelvoUpdateLog.txt")};
    const TestSupport::ApplicationFile m_batchFile{QStringLiteral("cover.bat")};
    TestSupport::StartedServices m_services;
    std::unique_ptr<E2e::PluginHost> m_host;
    std::unique_ptr<WhenEmitted> m_trigger;
};

int run(const std::function<void()>& steps)
{
    QTimer::singleShot(0, steps);
    return QCoreApplication::exec();
}

//! Reacts to a signal of the last step before the new version is recorded.
int react(Arguments arguments, const char* signal, const Reaction& reaction,
          const std::function<void(UpdateHost&)>& lastSteps)
{
    UpdateHost host(arguments);
    return run([&] {
        host.reactAt(signal, reaction);
        lastSteps(host);
        waitUntil([&] { return host.hasReacted(); }, "the signal comes");
        // The event loop deletes the objects that the reaction has left.
        QTimer::singleShot(0, [] { QCoreApplication::exit(Survived); });
    });
}

//! The new version is recorded by then, so the batch file must be started.
int reactAtTheCommitment(Arguments arguments, const char* signal, const Reaction& reaction)
{
    UpdateHost host(arguments);
    const int status = run([&] {
        host.check();
        host.download();
        host.reactAt(signal, reaction);
        E2e::callUpdater("upgrade");
    });
    require(status == 0 && host.hasReacted(), "the update ends the application");
    require(host.hasBatchFile(), "the batch file is written");
    return Survived;
}

void checkOnly(UpdateHost& host)
{
    host.check();
}

void checkAndDownload(UpdateHost& host)
{
    host.check();
    host.download();
}

//! Without a check there is no address, so the transfer fails at once.
void failToDownload(UpdateHost& /*host*/)
{
    E2e::callUpdater("download");
}

void upgradeOnly(UpdateHost& /*host*/)
{
    E2e::callUpdater("upgrade");
}

} // namespace

void addUpdates(Scenarios& scenarios)
{
    struct Signal {
        const char* name;
        const char* signal;
        void (*steps)(UpdateHost& host);
    };
    const Signal rows[] = {
        {"needUpdate", SIGNAL(needUpdate(bool)), checkOnly},
        {"latestVersionChanged", SIGNAL(latestVersionChanged()), checkOnly},
        {"changeLogChanged", SIGNAL(changeLogChanged()), checkOnly},
        {"readyUpdateInfo of a check", SIGNAL(readyUpdateInfo(QString)), checkOnly},
        {"readyUpdateInfo of a failed download", SIGNAL(readyUpdateInfo(QString)), failToDownload},
        {"downloadStarted", SIGNAL(downloadStarted(QString, qint64)), checkAndDownload},
        {"downloadProgress", SIGNAL(downloadProgress(QString, qint64, qint64)), checkAndDownload},
        {"downloadFinished", SIGNAL(downloadFinished(QString)), checkAndDownload},
        {"upgradeStart", SIGNAL(upgradeStart()), upgradeOnly},
    };
    const std::map<std::string, const char*> commitments{
        {"upgradeProcess of the end", SIGNAL(upgradeProcess(float))},
        {"upgradeEnd", SIGNAL(upgradeEnd())},
        {"readyUpdateInfo of the end", SIGNAL(readyUpdateInfo(QString))},
    };
    const std::map<std::string, Reaction> reactions{{"Shutdown", shutDown}, {"Initialize", initialize}};
    for (const auto& [name, reaction] : reactions) {
        for (const Signal& row : rows) {
            scenarios[joined(name, " at ", row.name)] = [row, reaction = reaction](Arguments arguments) {
                return react(arguments, row.signal, reaction, row.steps);
            };
        }
        for (const auto& [signalName, signal] : commitments) {
            scenarios[joined(name, " at ", signalName)] = [signal = signal,
                                                           reaction = reaction](Arguments arguments) {
                return reactAtTheCommitment(arguments, signal, reaction);
            };
        }
    }
}

} // namespace Survival
