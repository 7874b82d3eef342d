#include "probe/probeoptions.h"

#include "commandline/commandline.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace NelvoDevkit {

namespace {

constexpr char PasswordVariable[] = "NELVO_PROBE_PASSWORD";
constexpr char UpdateTokenVariable[] = "NELVO_PROBE_UPDATE_TOKEN";

void describe(QCommandLineParser& parser)
{
    parser.setApplicationDescription(QStringLiteral(
        "Calls all services through the plug-in and prints for each step the reply and what is wrong.\n"
        "Changes no data on the server, but signs the account in here and thereby out elsewhere.\n"
        "Exit status: 0 everything works, 1 something is wrong, 2 wrong usage."));
    addOption(parser, "url", "ADDRESS",
              "Address of the sign-in service; http:// is added if it has no scheme.");
    addOption(parser, "user", "NAME", "User name.");
    addOption(parser, "password", "TEXT",
              "Password; other users can see it in the list of processes. By default the variable "
              "NELVO_PROBE_PASSWORD, then a prompt or the first line of standard input.");
    addOption(parser, "enterprise", "ID",
              "Id of the enterprise to enter; by default the first one of the account.");
    addOption(parser, "plugin", "FOLDER",
              "Folder of the plug-in; by default the folder of this program or ../app.");
    addOption(parser, "certificate", "FILE",
              "PEM file of trusted certificates, in addition to those of the system.");
    addOption(parser, "update-url", "ADDRESS",
              "Address of the update service; by default it is not checked.");
    addOption(parser, "update-token", "TEXT",
              "Access token of the update service; by default the variable NELVO_PROBE_UPDATE_TOKEN.");
    addOption(parser, "product", "ID", "Id of the product; required with --update-url.");
    addOption(parser, "timeout", "SECONDS", "Maximum time for all steps together; by default 60.");
    parser.addOption({QStringLiteral("json"), QStringLiteral("Print JSON instead of the table.")});
    addOption(parser, "report", "FILE", "Write a report without secrets to a file, for a bug report.");
}

QString withScheme(const QString& address)
{
    return address.contains(QStringLiteral("://")) ? address : QStringLiteral("http://") + address;
}

void checkAddress(const QString& option, const QString& address)
{
    const QUrl url(address, QUrl::StrictMode);
    const bool isWeb = url.scheme() == QStringLiteral("http") || url.scheme() == QStringLiteral("https");
    if (!isWeb || url.host().isEmpty())
        throw wrongUsage(QStringLiteral("'--%1' takes an address such as https://host:port").arg(option));
    if (address.endsWith(QLatin1Char('/')))
        throw wrongUsage(
            QStringLiteral("'--%1' takes no slash at its end: paths are put behind it").arg(option));
}

void checkTogether(const QCommandLineParser& parser)
{
    refuseLooseArguments(parser);
    for (const auto& name : {QStringLiteral("user"), QStringLiteral("url")}) {
        if (parser.value(name).isEmpty())
            throw wrongUsage(QStringLiteral("'--%1' is missing").arg(name));
    }
    bool isNumber = true;
    if (parser.isSet(QStringLiteral("enterprise")))
        parser.value(QStringLiteral("enterprise")).toInt(&isNumber);
    if (!isNumber)
        throw wrongUsage(QStringLiteral("'--enterprise' takes a number"));
    if (parser.isSet(QStringLiteral("update-url")) && !parser.isSet(QStringLiteral("product")))
        throw wrongUsage(QStringLiteral("'--update-url' needs '--product' as well"));
}

void checkValues(const ProbeOptions& options)
{
    if (options.patience.count() <= 0)
        throw wrongUsage(QStringLiteral("'--timeout' takes a number of seconds above 0"));
    checkAddress(QStringLiteral("url"), options.url);
    if (!options.updateUrl.isEmpty())
        checkAddress(QStringLiteral("update-url"), options.updateUrl);
}

QStringList pluginFolders(const QString& given)
{
    const QDir own(QCoreApplication::applicationDirPath());
    if (given.isEmpty())
        return {own.absolutePath(), own.absoluteFilePath(QStringLiteral("../app"))};
    const QFileInfo info(given);
    return {info.isFile() ? info.absolutePath() : info.absoluteFilePath()};
}

std::optional<QString> optionOrVariable(const QCommandLineParser& parser, const char* option,
                                        const char* variable)
{
    if (parser.isSet(QLatin1String(option)))
        return parser.value(QLatin1String(option));
    if (qEnvironmentVariableIsSet(variable))
        return qEnvironmentVariable(variable);
    return std::nullopt;
}

ProbeOptions read(const QCommandLineParser& parser)
{
    const auto value = [&parser](const char* name) { return parser.value(QLatin1String(name)); };
    ProbeOptions options;
    options.url = withScheme(value("url"));
    options.user = value("user");
    options.password = optionOrVariable(parser, "password", PasswordVariable);
    if (parser.isSet(QStringLiteral("enterprise")))
        options.enterprise = value("enterprise").toInt();
    options.pluginFolders = pluginFolders(value("plugin"));
    options.certificateFile = value("certificate");
    if (parser.isSet(QStringLiteral("update-url")))
        options.updateUrl = withScheme(value("update-url"));
    options.updateToken = optionOrVariable(parser, "update-token", UpdateTokenVariable).value_or(QString());
    options.product = value("product");
    if (parser.isSet(QStringLiteral("timeout")))
        options.patience = std::chrono::seconds(value("timeout").toInt());
    options.json = parser.isSet(QStringLiteral("json"));
    options.reportFile = value("report");
    return options;
}

} // namespace

std::optional<ProbeOptions> ProbeOptions::parse(const QStringList& arguments)
{
    QCommandLineParser parser;
    describe(parser);
    if (!readArguments(parser, arguments))
        return std::nullopt;
    checkTogether(parser);
    const ProbeOptions options = read(parser);
    checkValues(options);
    return options;
}

} // namespace NelvoDevkit
