#include "host/hostoptions.h"

#include "commandline/commandline.h"

namespace NelvoDevkit {

namespace {

void describe(QCommandLineParser& parser)
{
    parser.setApplicationDescription(QStringLiteral(
        "A single argument goes to the plug-in, as a sign-in from the command line.\n"
        "To run two hosts at once, start each from its own copy of the application folder:\n"
        "accounts are stored beside the executable. With the same account, the second sign-in\n"
        "pushes the first one out."));
    addOption(parser, "settings", "FILE",
              "Settings file; by default NelvoEditor.json beside the executable.");
    addOption(parser, "check-update", "WHEN",
              "Check for a newer release automatically: at 'start' or at each 'sign-in'.");
}

} // namespace

std::optional<HostOptions> HostOptions::parse(const QStringList& arguments)
{
    HostOptions options;
    if (arguments.size() == 2)
        return options;
    QCommandLineParser parser;
    describe(parser);
    if (!readArguments(parser, arguments))
        return std::nullopt;
    refuseLooseArguments(parser);
    const QStringList given = parser.optionNames();
    for (const QString& name : given) {
        if (parser.value(name).isEmpty())
            throw wrongUsage(QStringLiteral("'--%1' needs a value").arg(name));
    }
    options.settingsFile = parser.value(QStringLiteral("settings"));
    options.updateCheck = parser.value(QStringLiteral("check-update"));
    if (!QStringList{QString(), CheckAtStart, CheckAtSignIn}.contains(options.updateCheck)) {
        throw wrongUsage(
            QStringLiteral("'--check-update' takes '%1' or '%2'").arg(CheckAtStart, CheckAtSignIn));
    }
    return options;
}

QString HostOptions::usage()
{
    QCommandLineParser parser;
    describe(parser);
    return parser.helpText();
}

} // namespace NelvoDevkit
