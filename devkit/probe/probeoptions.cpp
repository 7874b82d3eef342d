#include "probe/probeoptions.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace NelvoDevkit {

namespace {

constexpr char PasswordVariable[] = "NELVO_PROBE_PASSWORD";
constexpr char UpdateTokenVariable[] = "NELVO_PROBE_UPDATE_TOKEN";

void addOptions(QCommandLineParser& parser)
{
    const auto add = [&parser](const char* name, const char* value, const char* description) {
        parser.addOption(
            {QString::fromLatin1(name), QString::fromLatin1(description), QString::fromLatin1(value)});
    };
    parser.setApplicationDescription(QStringLiteral(
        "Walks through the services as the plug-in does, by the plug-in itself, and tells what answers and "
        "what is wrong.\n"
        "Changes nothing on the server; but the account is signed in here then, and out elsewhere.\n"
        "Status: 0 all is well, 1 something is wrong, 2 wrong usage."));
    parser.addOption({{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("This text.")});
    add("url", "ADDRESS", "Address of the sign-in service; without a scheme it gets http://.");
    add("user", "NAME", "User name.");
    add("password", "TEXT",
        "Password, which others can see in the list of processes. Without it the variable "
        "NELVO_PROBE_PASSWORD counts, then the terminal or standard input.");
    add("enterprise", "ID", "Enterprise to enter; the account's first one if left out.");
    add("plugin", "FOLDER", "Where the plug-in is; beside this program or in ../app if left out.");
    add("certificate", "FILE", "PEM file of certificates to trust besides the system's.");
    add("update-url", "ADDRESS", "Address of the update service; not asked if left out.");
    add("update-token", "TEXT", "Its access token; or the variable NELVO_PROBE_UPDATE_TOKEN.");
    add("product", "ID", "Product to ask it for.");
    add("timeout", "SECONDS", "How long the whole walk may take; 60 if left out.");
    parser.addOption({QStringLiteral("json"), QStringLiteral("Print JSON in place of the table.")});
    add("report", "FILE", "Write a report without secrets there, for a bug report.");
}

QString withScheme(const QString& address)
{
    return address.contains(QStringLiteral("://")) ? address : QStringLiteral("http://") + address;
}

QString addressMistake(const QString& option, const QString& address)
{
    const QUrl url(address, QUrl::StrictMode);
    const bool isWeb = url.scheme() == QStringLiteral("http") || url.scheme() == QStringLiteral("https");
    if (!isWeb || url.host().isEmpty())
        return QStringLiteral("'--%1' takes an address such as https://host:port").arg(option);
    if (address.endsWith(QLatin1Char('/')))
        return QStringLiteral("'--%1' takes no slash at its end: paths are put behind it").arg(option);
    return {};
}

//! What is wrong with the parsed options on the whole; empty if nothing is.
QString findMistake(const QCommandLineParser& parser)
{
    if (!parser.positionalArguments().isEmpty())
        return QStringLiteral("unknown argument '%1'").arg(parser.positionalArguments().constFirst());
    for (const auto& name : {QStringLiteral("user"), QStringLiteral("url")}) {
        if (parser.value(name).isEmpty())
            return QStringLiteral("'--%1' is missing").arg(name);
    }
    bool isNumber = true;
    if (parser.isSet(QStringLiteral("enterprise")))
        parser.value(QStringLiteral("enterprise")).toInt(&isNumber);
    if (!isNumber)
        return QStringLiteral("'--enterprise' takes a number");
    if (parser.isSet(QStringLiteral("update-url")) && !parser.isSet(QStringLiteral("product")))
        return QStringLiteral("'--update-url' needs '--product' as well");
    return {};
}

//! Likewise with what they come to.
QString findMistake(const ProbeOptions& options)
{
    if (options.patience.count() <= 0)
        return QStringLiteral("'--timeout' takes a number of seconds above 0");
    QString mistake = addressMistake(QStringLiteral("url"), options.url);
    if (!mistake.isEmpty() || options.updateUrl.isEmpty())
        return mistake;
    return addressMistake(QStringLiteral("update-url"), options.updateUrl);
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

std::optional<ProbeOptions> ProbeOptions::parse(const QStringList& arguments, QString* error)
{
    QCommandLineParser parser;
    addOptions(parser);
    *error = parser.parse(arguments) ? QString() : parser.errorText();
    if (error->isEmpty() && parser.isSet(QStringLiteral("help"))) {
        ProbeOptions options;
        options.help = true;
        return options;
    }
    if (error->isEmpty())
        *error = findMistake(parser);
    if (!error->isEmpty())
        return std::nullopt;
    ProbeOptions options = read(parser);
    *error = findMistake(options);
    return error->isEmpty() ? std::optional(options) : std::nullopt;
}

QString ProbeOptions::usage()
{
    QCommandLineParser parser;
    addOptions(parser);
    return parser.helpText();
}

} // namespace NelvoDevkit
