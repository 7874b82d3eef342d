#include <package/updatepackage.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

#include <optional>

namespace {

//! What the command line asks for.
struct Arguments {
    QString directory;
    QString package;
};

//! Why the program can't do what it was started for.
struct Failure {
    QString text;
};

//! Nothing if the usage is all that is asked for, which is printed then.
std::optional<Arguments> readArguments()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Packs what is below a directory into an update package, a zip archive with names in GB2312, and\n"
        "prints its MD5, its size and what else one needs to offer it, as JSON. The same files give the\n"
        "same package, byte for byte."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("directory"),
                                 QStringLiteral("Directory that becomes the root of the package."));
    parser.addPositionalArgument(QStringLiteral("package"),
                                 QStringLiteral("File to write, outside of the directory."));
    // QCommandLineParser::process would show a message box where there is no console.
    if (!parser.parse(QCoreApplication::arguments()))
        throw Failure{parser.errorText()};
    if (parser.isSet(QStringLiteral("help")) || parser.isSet(QStringLiteral("help-all"))) {
        QTextStream(stdout) << parser.helpText();
        return std::nullopt;
    }
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() != 2)
        throw Failure{QStringLiteral("it takes a directory and a package; --help tells more")};
    return Arguments{arguments.first(), arguments.last()};
}

QByteArray report(const QString& package, const NelvoDevkit::PackageSummary& summary)
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
    const auto summary = NelvoDevkit::packDirectory(arguments.directory, arguments.package, &error);
    if (!summary)
        throw Failure{error};
    QTextStream out(stdout);
    out.setCodec("UTF-8");
    out << QString::fromUtf8(report(arguments.package, *summary));
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    try {
        if (const auto arguments = readArguments())
            pack(*arguments);
        return 0;
    } catch (const Failure& failure) {
        QTextStream err(stderr);
        err.setCodec("UTF-8");
        err << "nelvo-package: " << failure.text << '\n';
        return 1;
    }
}
