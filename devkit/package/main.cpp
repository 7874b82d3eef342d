#include "commandline/commandline.h"
#include "package/updatepackage.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <optional>

using namespace NelvoDevkit;

namespace {

//! What the command line asks for.
struct Arguments {
    QString directory;
    QString package;
};

//! Nothing if the help is asked for.
std::optional<Arguments> parseArguments()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Packs what is below a directory into an update package, a zip archive with names in GB2312, and\n"
        "prints its MD5, its size and what else one needs to offer it, as JSON. The same files give the\n"
        "same package, byte for byte."));
    parser.addPositionalArgument(QStringLiteral("directory"),
                                 QStringLiteral("Directory that becomes the root of the package."));
    parser.addPositionalArgument(QStringLiteral("package"),
                                 QStringLiteral("File to write, outside of the directory."));
    if (!readArguments(parser, QCoreApplication::arguments()))
        return std::nullopt;
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() != 2)
        throw wrongUsage(QStringLiteral("it takes a directory and a package"));
    return Arguments{arguments.first(), arguments.last()};
}

QByteArray report(const QString& package, const PackageSummary& summary)
{
    return QJsonDocument(QJsonObject{{QStringLiteral("package"), QFileInfo(package).absoluteFilePath()},
                                     {QStringLiteral("md5"), summary.md5},
                                     {QStringLiteral("size"), summary.size},
                                     {QStringLiteral("entries"), summary.entries}})
        .toJson();
}

void pack(const Arguments& arguments)
{
    QString error;
    const auto summary = packDirectory(arguments.directory, arguments.package, &error);
    if (!summary)
        throw Failure{error};
    output() << QString::fromUtf8(report(arguments.package, *summary));
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    return runProgram("nelvo-package", [] {
        if (const auto arguments = parseArguments())
            pack(*arguments);
        return 0;
    });
}
