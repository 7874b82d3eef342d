#include <services/endrequest.h>
#include <services/seed.h>
#include <services/services.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QTextStream>

#include <cstdio>
#include <optional>

using NelvoDevkit::Services;
using NelvoDevkit::ServicesOptions;

namespace {

//! Why the program can't do what it was started for.
struct Failure {
    QString text;
};

//! What the command line asks for.
struct Arguments {
    ServicesOptions options;
    QString certificateFile;
    QString readyFile;
};

QTextStream& writeUtf8(QTextStream& stream)
{
    stream.setCodec("UTF-8");
    return stream;
}

QString valueOption(QCommandLineParser& parser, const QString& name, const QString& description,
                    const QString& valueName)
{
    parser.addOption(QCommandLineOption(name, description, valueName));
    return name;
}

quint16 port(const QCommandLineParser& parser, const QString& option)
{
    if (!parser.isSet(option))
        return 0;
    bool ok = false;
    const quint16 number = parser.value(option).toUShort(&ok);
    if (!ok) {
        throw Failure{
            QStringLiteral("--%1: \"%2\" is no port from 0 to 65535").arg(option, parser.value(option))};
    }
    return number;
}

//! Nothing if the usage is all that is asked for, which is printed then.
std::optional<Arguments> readArguments()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Simulates the sign-in, the editor and the update service and the package server on 127.0.0.1.\n"
        "Runs until Ctrl+C or SIGTERM."));
    parser.addHelpOption();
    const QString portName = QStringLiteral("port");
    const QString fileName = QStringLiteral("file");
    const QString signInPort =
        valueOption(parser, QStringLiteral("sign-in-port"),
                    QStringLiteral("Port of the sign-in service; any if left out."), portName);
    const QString editorPort =
        valueOption(parser, QStringLiteral("editor-port"),
                    QStringLiteral("Port of the editor service; any if left out."), portName);
    const QString updatePort =
        valueOption(parser, QStringLiteral("update-port"),
                    QStringLiteral("Port of the update service; any if left out."), portName);
    const QString packagePort =
        valueOption(parser, QStringLiteral("package-port"),
                    QStringLiteral("Port of the package server; any if left out."), portName);
    const QString controlPort =
        valueOption(parser, QStringLiteral("control-port"),
                    QStringLiteral("Port of the control path; any if left out."), portName);
    const QString seed =
        valueOption(parser, QStringLiteral("seed"),
                    QStringLiteral("JSON file with accounts, enterprises and releases."), fileName);
    const QString https = QStringLiteral("https");
    parser.addOption({https, QStringLiteral("Speak HTTPS with a certificate made at start.")});
    const QString certificate =
        valueOption(parser, QStringLiteral("certificate-out"),
                    QStringLiteral("Write that certificate there, as PEM."), fileName);
    const QString ready = valueOption(
        parser, QStringLiteral("ready-file"),
        QStringLiteral("Write the addresses there, as JSON, once the services listen."), fileName);
    // QCommandLineParser::process would show a message box where there is no console.
    if (!parser.parse(QCoreApplication::arguments()))
        throw Failure{parser.errorText()};
    if (parser.isSet(QStringLiteral("help")) || parser.isSet(QStringLiteral("help-all"))) {
        QTextStream(stdout) << parser.helpText();
        return std::nullopt;
    }

    if (!parser.positionalArguments().isEmpty())
        throw Failure{QStringLiteral("unknown argument \"%1\"").arg(parser.positionalArguments().first())};
    if (parser.isSet(certificate) && !parser.isSet(https))
        throw Failure{QStringLiteral("--certificate-out goes with --https only")};
    return Arguments{{port(parser, signInPort), port(parser, editorPort), port(parser, updatePort),
                      port(parser, packagePort), port(parser, controlPort), parser.value(seed),
                      parser.isSet(https)},
                     parser.value(certificate),
                     parser.value(ready)};
}

//! Writes a whole file or nothing.
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
                                     {QStringLiteral("updateToken"), services.updateToken()},
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

void printAccounts(QTextStream& out, const NelvoDevkit::Seed& seed)
{
    out << "\naccounts (user, password, enterprises)\n";
    for (const auto& account : seed.accounts)
        out << "  " << account.user << "  " << account.password << "  " << account.enterprises.size() << '\n';
}

void printReleases(QTextStream& out, const Services& services)
{
    out << "\nreleases (product, version, package), for the access token " << services.updateToken() << '\n';
    const auto releases = services.releases();
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
    // Whoever waits for the file must not find that of an earlier run.
    QFile stale(arguments.readyFile);
    if (stale.exists() && !stale.remove())
        throw Failure{QStringLiteral("can't remove %1: %2").arg(stale.fileName(), stale.errorString())};

    NelvoDevkit::EndRequest endRequest;
    QString error;
    const auto seed = NelvoDevkit::loadSeed(arguments.options.seedFile, &error);
    Services services(arguments.options);
    if (!seed || !services.start(&error))
        throw Failure{error};
    if (!arguments.certificateFile.isEmpty())
        writeFile(arguments.certificateFile, services.certificatePem());

    QTextStream out(stdout);
    writeUtf8(out);
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
    try {
        if (const auto arguments = readArguments())
            run(*arguments);
        return 0;
    } catch (const Failure& failure) {
        QTextStream err(stderr);
        writeUtf8(err) << "nelvo-services: " << failure.text << '\n';
        return 1;
    }
}
