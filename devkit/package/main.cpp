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

//! The arguments of the command line.
struct Arguments {
    QString directory;
    QString package;
    NameEncoding names = NameEncoding::Gb2312;
};

//! Returns nothing if the arguments request the help.
std::optional<Arguments> parseArguments()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Packs the content of a directory into an update package, a zip archive, and prints path, MD5, size\n"
        "and number of entries as JSON. The same files always give the same package, byte for byte."));
    const QCommandLineOption utf8(
        QStringLiteral("utf8"),
        QStringLiteral(
            "Mark names as UTF-8, which every system reads. By default names are GB2312; a system with "
            "another code page unpacks files with names outside ASCII as empty files."));
    parser.addOption(utf8);
    parser.addPositionalArgument(QStringLiteral("directory"),
                                 QStringLiteral("Directory that becomes the root of the package."));
    parser.addPositionalArgument(QStringLiteral("package"),
                                 QStringLiteral("File to write; must be outside of the directory."));
    if (!readArguments(parser, QCoreApplication::arguments()))
        return std::nullopt;
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() != 2)
        throw wrongUsage(QStringLiteral("it takes a directory and a package"));
    return Arguments{arguments.first(), arguments.last(),
                     parser.isSet(utf8) ? NameEncoding::Utf8 : NameEncoding::Gb2312};
}

QByteArray report(const QString& package, const PackageSummary& summary)
{
    return QJsonDocument(QJsonObject{{QStringLiteral("package"), QFileInfo(package).absoluteFilePath()},
                                     {QStringLiteral("md5"), summary.md5},
                                     {QStringLiteral("size"), summary.size},
                                     {QStringLiteral("entries"), summary.entries}})
        .toJson();
}

void warnOfNames(const QStringList& names)
{
    if (names.isEmpty())
        return;
    errorOutput() << QStringLiteral(
                         "nelvo-package: %1 of the names need a system whose code page holds GB2312, such as "
                         "\"%2\"; elsewhere use --utf8\n")
                         .arg(names.size())
                         .arg(names.first());
    errorOutput().flush();
}

void pack(const Arguments& arguments)
{
    QString error;
    const auto summary = packDirectory(arguments.directory, arguments.package, &error, arguments.names);
    if (!summary)
        throw Failure{error};
    if (arguments.names == NameEncoding::Gb2312)
        warnOfNames(summary->namesBeyondAscii);
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
