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
#include <iostream>
#include <optional>

namespace {

using namespace NelvoDevkit;

enum Status { Well, Wrong, WrongUsage };

int refuse(const QString& reason)
{
    std::cerr << "nelvo-probe: " << reason.toStdString() << std::endl;
    return WrongUsage;
}

bool trustCertificates(const QString& file)
{
    const QList<QSslCertificate> certificates = QSslCertificate::fromPath(file);
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.addCaCertificates(certificates);
    QSslConfiguration::setDefaultConfiguration(configuration);
    return !certificates.isEmpty();
}

//! Prints what was found, writes the report, and returns the status.
int tell(const Report& report, QFile& file)
{
    std::cout << (report.options.json ? report.json().toStdString() : report.table().toStdString())
              << std::flush;
    const QByteArray text = report.text().toUtf8();
    const bool isWritten = !file.isOpen() || (file.write(text) == text.size() && file.flush());
    if (!isWritten)
        std::cerr << "nelvo-probe: the report could not be written: " << file.errorString().toStdString()
                  << std::endl;
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
        // A call of the plug-in may be under way, and nothing but the end of the process ends it.
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

//! What is to be done, or the status to end with where there is nothing to do.
struct Order {
    std::optional<ProbeOptions> options;
    int status = Well;
};

//! The application of the walk would take some of the options for its own, so another one reads them.
Order readOrder(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QString error;
    auto options = ProbeOptions::parse(QCoreApplication::arguments(), &error);
    if (!options)
        return {{}, refuse(error + QStringLiteral("\n\n") + ProbeOptions::usage())};
    if (!options->help)
        return {options};
    std::cout << ProbeOptions::usage().toStdString() << std::flush;
    return {};
}

int run(ProbeOptions options)
{
    if (!options.certificateFile.isEmpty() && !trustCertificates(options.certificateFile))
        return refuse(QStringLiteral("no certificate in %1").arg(options.certificateFile));
    QFile reportFile(options.reportFile);
    if (!options.reportFile.isEmpty() && !reportFile.open(QIODevice::WriteOnly))
        return refuse(QStringLiteral("%1: %2").arg(options.reportFile, reportFile.errorString()));
    if (!options.password)
        options.password = readPassword();
    return probe(options, reportFile);
}

} // namespace

int main(int argc, char* argv[])
{
    const Order order = readOrder(argc, argv);
    if (!order.options)
        return order.status;
    // The login window is never shown.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    int nameOnly = 1;
    const QGuiApplication application(nameOnly, argv);
    return run(*order.options);
}
