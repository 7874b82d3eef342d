#include "launch/launchoptions.h"

#include "commandline/commandline.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QUuid>

namespace NelvoDevkit {

namespace {

const auto Separator = QStringLiteral("$$");

void describe(QCommandLineParser& parser)
{
    parser.setApplicationDescription(QStringLiteral(
        "Starts a host with a sign-in from the command line and waits until the sign-in has ended.\n"
        "Exit status: 0 the sign-in has ended, 1 the host did not start, 2 wrong usage, 3 timeout,\n"
        "4 the host ended before the sign-in, 5 interrupted."));
    addOption(parser, "user", "NAME", "User name.");
    addOption(parser, "password", "TEXT", "Password; its MD5 is passed to the host.");
    addOption(parser, "md5", "HEX",
              "MD5 of the password, instead of --password; passed to the host unchanged.");
    addOption(parser, "url", "ADDRESS", "Address of the sign-in service.");
    addOption(parser, "enterprise", "ID", "Id of the enterprise to enter.");
    addOption(parser, "host", "PROGRAM", "Host to start; by default NelvoEditor in ../app.");
    addOption(parser, "timeout", "SECONDS", "Maximum time to wait; by default 60.");
    addOption(parser, "event", "NAME", "Name of the event; by default a unique name.");
    addOption(parser, "mapping", "NAME", "Name of the shared memory; by default a unique name.");
    parser.addOption(
        {QStringLiteral("end"), QStringLiteral("End the host afterwards; by default it continues.")});
    parser.addOption(
        {QStringLiteral("await-end"), QStringLiteral("Wait until the host ends, and exit with its status.")});
}

QString md5(const QString& password)
{
    return QString::fromLatin1(QCryptographicHash::hash(password.toUtf8(), QCryptographicHash::Md5).toHex());
}

QString uniqueName(const QString& kind)
{
    return QStringLiteral("nelvo-launch-%1-%2").arg(QUuid::createUuid().toString(QUuid::WithoutBraces), kind);
}

void checkTogether(const QCommandLineParser& parser)
{
    refuseLooseArguments(parser);
    for (const auto& name : {QStringLiteral("user"), QStringLiteral("url"), QStringLiteral("enterprise")}) {
        if (!parser.isSet(name))
            throw wrongUsage(QStringLiteral("'--%1' is missing").arg(name));
    }
    if (parser.isSet(QStringLiteral("password")) == parser.isSet(QStringLiteral("md5")))
        throw wrongUsage(QStringLiteral("one of '--password' and '--md5' is needed"));
    if (parser.isSet(QStringLiteral("end")) && parser.isSet(QStringLiteral("await-end")))
        throw wrongUsage(QStringLiteral("'--end' and '--await-end' exclude one another"));
}

void checkValues(const LaunchOptions& options)
{
    if (options.patience.count() <= 0)
        throw wrongUsage(QStringLiteral("'--timeout' takes a number of seconds above 0"));
    if (options.eventName.isEmpty() || options.mappingName.isEmpty())
        throw wrongUsage(QStringLiteral("event and mapping need names"));
    const QStringList parts = options.hostArgument().split(Separator);
    const QStringList given{options.user,      options.passwordMd5, options.url,
                            options.eventName, options.mappingName, options.enterprise};
    if (parts != given) {
        throw wrongUsage(
            QStringLiteral("no text may hold \"$$\" or end in \"$\": the host could not tell them apart"));
    }
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

std::optional<LaunchOptions> LaunchOptions::parse(const QStringList& arguments)
{
    QCommandLineParser parser;
    describe(parser);
    if (!readArguments(parser, arguments))
        return std::nullopt;
    checkTogether(parser);
    const LaunchOptions options = read(parser);
    checkValues(options);
    return options;
}

QString LaunchOptions::hostArgument() const
{
    return QStringList{user, passwordMd5, url, eventName, mappingName, enterprise}.join(Separator);
}

} // namespace NelvoDevkit
