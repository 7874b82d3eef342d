#include "commandline/commandline.h"
#include "probe/password.h"
#include "probe/probeoptions.h"
#include "probe/report.h"
#include "probe/walk.h"

#include <QFile>
#include <QGuiApplication>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QTimer>

#include <cstdlib>
#include <optional>

namespace {

using namespace NelvoDevkit;

enum Status { Well, Wrong };

//! Qt logs messages before the walk begins, such as a missing directory for temporary files. Only fatal
//! messages matter to the user.
void showFatalOnly(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message)
{
    if (type == QtFatalMsg)
        errorOutput() << "nelvo-probe: " << message << Qt::endl;
}

void trustCertificates(const QString& fileName)
{
    // QSslCertificate::fromPath treats the name of a missing file as a pattern and searches all directories.
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw wrongUsage(QStringLiteral("%1: %2").arg(fileName, file.errorString()));
    const QList<QSslCertificate> certificates = QSslCertificate::fromDevice(&file);
    if (certificates.isEmpty())
        throw wrongUsage(QStringLiteral("no certificate in %1").arg(fileName));
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.addCaCertificates(certificates);
    QSslConfiguration::setDefaultConfiguration(configuration);
}

//! Prints the findings, writes the report and returns the exit status.
int tell(const Report& report, QFile& file)
{
    output() << (report.options.json ? QString::fromUtf8(report.json()) : report.table()) << Qt::flush;
    const QByteArray text = report.text().toUtf8();
    const bool isWritten = !file.isOpen() || (file.write(text) == text.size() && file.flush());
    if (!isWritten)
        errorOutput() << "nelvo-probe: the report could not be written: " << file.errorString() << Qt::endl;
    return report.findings.areAllWell() && isWritten ? Well : Wrong;
}

int probe(const ProbeOptions& options, QFile& reportFile)
{
    Findings findings;
    Redaction redaction;
    redaction.hidePassword(*options.password);
    redaction.hide(options.updateToken);
    redaction.hide(options.user, maskedAccount(options.user));
    Walk walk(options, findings, redaction);
    const auto tellAll = [&] {
        return tell({options, findings, walk.pluginVersion(), walk.trace().messages(), redaction},
                    reportFile);
    };

    QTimer::singleShot(options.patience, qApp, [&] {
        walk.interrupt();
        // A call of the plug-in may be running, and only the end of the process ends it.
        std::_Exit(tellAll());
    });
    QTimer::singleShot(0, qApp, [&walk] {
        walk.run();
        QCoreApplication::quit();
    });
    QGuiApplication::exec();
    walk.finish();
    return tellAll();
}

//! The application of the walk would remove some of the options, so another application object reads them.
std::optional<ProbeOptions> parseArguments(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return ProbeOptions::parse(QCoreApplication::arguments());
}

int run(ProbeOptions options)
{
    if (!options.certificateFile.isEmpty())
        trustCertificates(options.certificateFile);
    QFile reportFile(options.reportFile);
    if (!options.reportFile.isEmpty() && !reportFile.open(QIODevice::WriteOnly))
        throw wrongUsage(QStringLiteral("%1: %2").arg(options.reportFile, reportFile.errorString()));
    if (!options.password)
        options.password = readPassword();
    return probe(options, reportFile);
}

} // namespace

int main(int argc, char* argv[])
{
    return runProgram("nelvo-probe", [argc, argv]() -> int {
        const auto options = parseArguments(argc, argv);
        if (!options)
            return Well;
        // The login window stays hidden.
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        qInstallMessageHandler(&showFatalOnly);
        int nameOnly = 1;
        const QGuiApplication application(nameOnly, argv);
        return run(*options);
    });
}
