#include "host/hostoptions.h"

#include <QHash>

namespace NelvoDevkit {

namespace {

bool isOneOf(const QString& value, const QStringList& values)
{
    return value.isEmpty() || values.contains(value);
}

//! What does not fit together; empty if all does.
QString mistakeIn(const HostOptions& options)
{
    if (options.tourDirectory.isEmpty() != options.servicesFile.isEmpty())
        return QStringLiteral("'--tour' and '--services' go together");
    if (!options.tourDirectory.isEmpty() && !options.account.isEmpty())
        return QStringLiteral("a tour signs in by itself, without '--sign-in'");
    if (!options.stations.isEmpty() && options.tourDirectory.isEmpty())
        return QStringLiteral("'--stations' are those of a '--tour'");
    if (!isOneOf(options.stations, {InterruptedUpdate, ResumedUpdate, FinishedUpdate}))
        return QStringLiteral("unknown stations '%1'").arg(options.stations);
    if (!isOneOf(options.updateCheck, {CheckAtStart, CheckAtSignIn}))
        return QStringLiteral("'--check-update' takes '%1' or '%2'").arg(CheckAtStart, CheckAtSignIn);
    return {};
}

} // namespace

std::optional<HostOptions> HostOptions::parse(const QStringList& arguments, QString* error)
{
    HostOptions options;
    if (arguments.size() == 2)
        return options;

    const QHash<QString, QString*> targets = {{QStringLiteral("--settings"), &options.settingsFile},
                                              {QStringLiteral("--tour"), &options.tourDirectory},
                                              {QStringLiteral("--services"), &options.servicesFile},
                                              {QStringLiteral("--stations"), &options.stations},
                                              {QStringLiteral("--sign-in"), &options.account},
                                              {QStringLiteral("--check-update"), &options.updateCheck}};
    for (int i = 1; i < arguments.size(); i += 2) {
        const QString& name = arguments.at(i);
        QString* const target = targets.value(name);
        if (!target) {
            *error = QStringLiteral("unknown option '%1'").arg(name);
            return std::nullopt;
        }
        if (i + 1 == arguments.size() || arguments.at(i + 1).isEmpty()) {
            *error = QStringLiteral("option '%1' needs a value").arg(name);
            return std::nullopt;
        }
        *target = arguments.at(i + 1);
    }
    *error = mistakeIn(options);
    if (!error->isEmpty())
        return std::nullopt;
    return options;
}

QString HostOptions::usage()
{
    return QStringLiteral(
        "usage: NelvoEditor [--settings FILE] [--check-update WHEN] [--sign-in USER:PASSWORD]\n"
        "       NelvoEditor [--settings FILE] [--check-update WHEN] --tour DIR --services FILE\n"
        "                   [--stations NAME]\n"
        "       NelvoEditor SIGN-IN\n"
        "\n"
        "  --settings FILE          settings to use instead of NelvoEditor.json beside the executable\n"
        "  --sign-in USER:PASSWORD  fill in the login window; of several enterprises the first is entered\n"
        "  --check-update WHEN      look for a newer release by itself: at 'start', or at each 'sign-in'\n"
        "  --tour DIR               walk through the windows and leave pictures in DIR\n"
        "  --services FILE          ready file of the nelvo-services that the tour signs in to\n"
        "  --stations NAME          visit a part of the update in place of all else: 'interrupted-update',\n"
        "                           'resumed-update' or 'finished-update'\n"
        "  SIGN-IN                  a single argument goes to the plug-in, as a sign-in without a window\n"
        "\n"
        "Two hosts at once: start each from a copy of the application folder, since accounts are kept\n"
        "beside the executable. With one account, the second sign-in pushes the first one out.\n");
}

} // namespace NelvoDevkit
