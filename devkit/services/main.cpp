#include "commandline/commandline.h"
#include "services/endrequest.h"
#include "services/seed.h"
#include "services/services.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <optional>

using namespace NelvoDevkit;

namespace {

//! The arguments of the command line.
struct Arguments {
    ServicesOptions options;
    QString certificateFile;
    QString readyFile;
};

quint16 port(const QCommandLineParser& parser, const QString& option)
{
    if (!parser.isSet(option))
        return 0;
    bool ok = false;
    const quint16 number = parser.value(option).toUShort(&ok);
    if (!ok) {
        throw wrongUsage(
            QStringLiteral("--%1: \"%2\" is no port from 0 to 65535").arg(option, parser.value(option)));
    }
    return number;
}

void describe(QCommandLineParser& parser)
{
    parser.setApplicationDescription(QStringLiteral(
        "Simulates the sign-in service, the editor service, the update service and the package server\n"
        "on 127.0.0.1. Runs until Ctrl+C or SIGTERM."));
    addOption(parser, "sign-in-port", "port", "Port of the sign-in service; by default any free port.");
    addOption(parser, "editor-port", "port", "Port of the editor service; by default any free port.");
    addOption(parser, "update-port", "port", "Port of the update service; by default any free port.");
    addOption(parser, "package-port", "port", "Port of the package server; by default any free port.");
    addOption(parser, "control-port", "port", "Port of the control path; by default any free port.");
    addOption(parser, "seed", "file",
              "JSON file with accounts, enterprises and releases; by default built-in data.");
    parser.addOption({QStringLiteral("https"),
                      QStringLiteral("Use HTTPS, with a certificate that is created at the start.")});
    addOption(parser, "certificate-out", "file", "Write this certificate to a PEM file.");
    addOption(parser, "ready-file", "file", "Write the addresses to a JSON file when the services listen.");
}

//! Returns nothing if the arguments request the help.
std::optional<Arguments> parseArguments()
{
    QCommandLineParser parser;
    describe(parser);
    if (!readArguments(parser, QCoreApplication::arguments()))
        return std::nullopt;
    refuseLooseArguments(parser);
    const auto portOf = [&parser](const char* option) { return port(parser, QString::fromLatin1(option)); };
    const auto value = [&parser](const char* option) { return parser.value(QString::fromLatin1(option)); };
    const bool https = parser.isSet(QStringLiteral("https"));
    if (parser.isSet(QStringLiteral("certificate-out")) && !https)
        throw wrongUsage(QStringLiteral("--certificate-out goes with --https only"));
    return Arguments{{portOf("sign-in-port"), portOf("editor-port"), portOf("update-port"),
                      portOf("package-port"), portOf("control-port"), value("seed"), https},
                     value("certificate-out"),
                     value("ready-file")};
}

//! Writes a file completely or not at all.
void writeFile(const QString& name, const QByteArray& content)
{
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit())
        throw Failure{QStringLiteral("can't write %1: %2").arg(name, file.errorString())};
}

QByteArray readyText(const Services& services, const QString& certificateFile)
{
    const QString certificate =
        certificateFile.isEmpty() ? QString() : QFileInfo(certificateFile).absoluteFilePath();
    return QJsonDocument(QJsonObject{{QStringLiteral("signIn"), services.signInUrl()},
                                     {QStringLiteral("editor"), services.editorUrl()},
                                     {QStringLiteral("update"), services.updateUrl()},
                                     {QStringLiteral("updateToken"), services.updates().token()},
                                     {QStringLiteral("package"), services.packageUrl()},
                                     {QStringLiteral("control"), services.controlUrl()},
                                     {QStringLiteral("certificate"), certificate}})
        .toJson();
}

void printAddresses(QTextStream& out, const Services& services)
{
    out << "sign-in service  " << services.signInUrl() << '\n'
        << "editor service   " << services.editorUrl() << '\n'
        << "update service   " << services.updateUrl() << '\n'
        << "package server   " << services.packageUrl() << '\n'
        << "control path     " << services.controlUrl() << '\n';
}

void printAccounts(QTextStream& out, const Seed& seed)
{
    out << "\naccounts (user, password, number of enterprises)\n";
    for (const auto& account : seed.accounts)
        out << "  " << account.user << "  " << account.password << "  " << account.enterprises.size() << '\n';
}

void printReleases(QTextStream& out, const Services& services)
{
    out << "\nreleases (product, version, package), for the access token " << services.updates().token()
        << '\n';
    const auto releases = services.updates().releases();
    for (auto release = releases.begin(); release != releases.end(); ++release)
        out << "  " << release.key() << "  " << release->version << "  " << release->path << '\n';
}

void printHint(QTextStream& out, const Services& services)
{
    out << "\ninject a fault:  curl -X POST '" << services.controlUrl()
        << "/faults?fault=status&path=/login&value=503&once=1'\n"
        << "everything else: curl " << services.controlUrl() << "/\n";
}

void run(const Arguments& arguments)
{
    // A program that waits for the file must not find the file of an earlier run.
    QFile stale(arguments.readyFile);
    if (stale.exists() && !stale.remove())
        throw Failure{QStringLiteral("can't remove %1: %2").arg(stale.fileName(), stale.errorString())};

    EndRequest endRequest;
    QString error;
    const auto seed = loadSeed(arguments.options.seedFile, &error);
    Services services(arguments.options);
    if (!seed || !services.start(&error))
        throw Failure{error};
    if (!arguments.certificateFile.isEmpty())
        writeFile(arguments.certificateFile, services.certificatePem());

    QTextStream& out = output();
    printAddresses(out, services);
    printAccounts(out, *seed);
    printReleases(out, services);
    printHint(out, services);
    out.flush();
    if (!arguments.readyFile.isEmpty())
        writeFile(arguments.readyFile, readyText(services, arguments.certificateFile));
    endRequest.wait();
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    return runProgram("nelvo-services", [] {
        if (const auto arguments = parseArguments())
            run(*arguments);
        return 0;
    });
}
