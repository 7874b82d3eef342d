#include "host/hostoptions.h"

#include <QHash>

namespace NelvoDevkit {

std::optional<HostOptions> HostOptions::parse(const QStringList& arguments, QString* error)
{
    HostOptions options;
    if (arguments.size() == 2)
        return options;

    const QHash<QString, QString*> targets = {{QStringLiteral("--settings"), &options.settingsFile},
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
    if (!QStringList{QString(), CheckAtStart, CheckAtSignIn}.contains(options.updateCheck)) {
        *error = QStringLiteral("'--check-update' takes '%1' or '%2'").arg(CheckAtStart, CheckAtSignIn);
        return std::nullopt;
    }
    return options;
}

QString HostOptions::usage()
{
    return QStringLiteral(
        "usage: NelvoEditor [--settings FILE] [--check-update WHEN]\n"
        "       NelvoEditor SIGN-IN\n"
        "\n"
        "  --settings FILE          settings to use instead of NelvoEditor.json beside the executable\n"
        "  --check-update WHEN      look for a newer release by itself: at 'start', or at each 'sign-in'\n"
        "  SIGN-IN                  a single argument goes to the plug-in, as a sign-in without a window\n"
        "\n"
        "Two hosts at once: start each from a copy of the application folder, since accounts are kept\n"
        "beside the executable. With one account, the second sign-in pushes the first one out.\n");
}

} // namespace NelvoDevkit
