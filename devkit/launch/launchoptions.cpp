#include "launch/launchoptions.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QUuid>

namespace NelvoDevkit {

namespace {

const auto Separator = QStringLiteral("$$");

void addOptions(QCommandLineParser& parser)
{
    const auto add = [&parser](const char* name, const char* value, const char* description) {
        parser.addOption(
            {QString::fromLatin1(name), QString::fromLatin1(description), QString::fromLatin1(value)});
    };
    parser.setApplicationDescription(QStringLiteral(
        "Starts a host that signs in by itself and waits until it tells that the sign-in has run.\n"
        "Status: 0 it has, 1 not started, 2 wrong usage, 3 nothing in time, 4 the host ended before, "
        "5 interrupted."));
    parser.addOption({{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("This text.")});
    add("user", "NAME", "User name.");
    add("password", "TEXT", "Password; the host gets its MD5.");
    add("md5", "HEX", "The MD5 in place of the password, passed on as it is.");
    add("url", "ADDRESS", "Address of the sign-in service.");
    add("enterprise", "ID", "Enterprise to enter.");
    add("host", "PROGRAM", "Host to start; NelvoEditor in ../app if left out.");
    add("timeout", "SECONDS", "How long to wait; 60 if left out.");
    add("event", "NAME", "Name of the event; one of its own if left out.");
    add("mapping", "NAME", "Name of the shared memory; one of its own if left out.");
    parser.addOption({QStringLiteral("end"), QStringLiteral("End the host afterwards; otherwise it stays.")});
    parser.addOption({QStringLiteral("await-end"),
                      QStringLiteral("Wait for the host's end, too; the status is then the host's.")});
}

QString md5(const QString& password)
{
    return QString::fromLatin1(QCryptographicHash::hash(password.toUtf8(), QCryptographicHash::Md5).toHex());
}

QString uniqueName(const QString& kind)
{
    return QStringLiteral("nelvo-launch-%1-%2").arg(QUuid::createUuid().toString(QUuid::WithoutBraces), kind);
}

//! What is wrong with the parsed options on the whole; empty if nothing is.
QString findMistake(const QCommandLineParser& parser)
{
    if (!parser.positionalArguments().isEmpty())
        return QStringLiteral("unknown argument '%1'").arg(parser.positionalArguments().constFirst());
    for (const auto& name : {QStringLiteral("user"), QStringLiteral("url"), QStringLiteral("enterprise")}) {
        if (!parser.isSet(name))
            return QStringLiteral("'--%1' is missing").arg(name);
    }
    if (parser.isSet(QStringLiteral("password")) == parser.isSet(QStringLiteral("md5")))
        return QStringLiteral("one of '--password' and '--md5' is needed");
    if (parser.isSet(QStringLiteral("end")) && parser.isSet(QStringLiteral("await-end")))
        return QStringLiteral("'--end' and '--await-end' exclude one another");
    return {};
}

//! Likewise with what they come to.
QString findMistake(const LaunchOptions& options)
{
    if (options.patience.count() <= 0)
        return QStringLiteral("'--timeout' takes a number of seconds above 0");
    if (options.eventName.isEmpty() || options.mappingName.isEmpty())
        return QStringLiteral("event and mapping need names");
    const QStringList parts = options.hostArgument().split(Separator);
    const QStringList given{options.user,      options.passwordMd5, options.url,
                            options.eventName, options.mappingName, options.enterprise};
    if (parts != given)
        return QStringLiteral("no text may hold \"$$\" or end in \"$\": the host could not tell them apart");
    return {};
}

LaunchOptions read(const QCommandLineParser& parser)
{
    const auto value = [&parser](const char* name) { return parser.value(QLatin1String(name)); };
    const auto valueOr = [&](const char* name, const QString& otherwise) {
        return parser.isSet(QLatin1String(name)) ? value(name) : otherwise;
    };
    LaunchOptions options;
    options.user = value("user");
    options.passwordMd5 = valueOr("md5", md5(value("password")));
    options.url = value("url");
    options.eventName = valueOr("event", uniqueName(QStringLiteral("event")));
    options.mappingName = valueOr("mapping", uniqueName(QStringLiteral("mapping")));
    options.enterprise = value("enterprise");
    options.host = valueOr(
        "host",
        QDir(QCoreApplication::applicationDirPath()).absoluteFilePath(QStringLiteral("../app/NelvoEditor")));
    if (parser.isSet(QStringLiteral("timeout")))
        options.patience = std::chrono::seconds(value("timeout").toInt());
    if (parser.isSet(QStringLiteral("end")))
        options.afterwards = LaunchOptions::Afterwards::End;
    if (parser.isSet(QStringLiteral("await-end")))
        options.afterwards = LaunchOptions::Afterwards::Await;
    return options;
}

} // namespace

std::optional<LaunchOptions> LaunchOptions::parse(const QStringList& arguments, QString* error)
{
    QCommandLineParser parser;
    addOptions(parser);
    *error = parser.parse(arguments) ? QString() : parser.errorText();
    if (error->isEmpty() && parser.isSet(QStringLiteral("help"))) {
        LaunchOptions options;
        options.help = true;
        return options;
    }
    if (error->isEmpty())
        *error = findMistake(parser);
    if (!error->isEmpty())
        return std::nullopt;
    LaunchOptions options = read(parser);
    *error = findMistake(options);
    return error->isEmpty() ? std::optional(options) : std::nullopt;
}

QString LaunchOptions::hostArgument() const
{
    return QStringList{user, passwordMd5, url, eventName, mappingName, enterprise}.join(Separator);
}

QString LaunchOptions::usage()
{
    QCommandLineParser parser;
    addOptions(parser);
    return parser.helpText();
}

} // namespace NelvoDevkit
