#include "commandline/commandline.h"

#include <cstdio>

namespace NelvoDevkit {

namespace {

constexpr int WrongUsageStatus = 2;

QTextStream& asUtf8(QTextStream& stream)
{
    stream.setCodec("UTF-8");
    return stream;
}

} // namespace

Failure wrongUsage(const QString& reason)
{
    return {reason + QStringLiteral("; --help lists the options"), WrongUsageStatus};
}

QTextStream& output()
{
    static QTextStream stream(stdout);
    return asUtf8(stream);
}

QTextStream& errorOutput()
{
    static QTextStream stream(stderr);
    return asUtf8(stream);
}

void addOption(QCommandLineParser& parser, const char* name, const char* value, const char* description)
{
    parser.addOption(
        {QString::fromLatin1(name), QString::fromLatin1(description), QString::fromLatin1(value)});
}

bool readArguments(QCommandLineParser& parser, const QStringList& arguments)
{
    // Qt's own help option would also offer --help-all, which these programs do not have.
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Print this help."));
    parser.addOption(help);
    // QCommandLineParser::process would show a message box on a system without a console.
    if (!parser.parse(arguments)) {
        QString reason = parser.errorText();
        if (reason.endsWith(QLatin1Char('.')))
            reason.chop(1);
        throw wrongUsage(reason);
    }
    if (parser.isSet(help)) {
        output() << parser.helpText() << Qt::flush;
        return false;
    }
    return true;
}

void refuseLooseArguments(const QCommandLineParser& parser)
{
    const QStringList loose = parser.positionalArguments();
    if (!loose.isEmpty())
        throw wrongUsage(QStringLiteral("unknown argument '%1'").arg(loose.constFirst()));
}

int runProgram(const char* name, const std::function<int()>& program)
{
    try {
        return program();
    } catch (const Failure& failure) {
        errorOutput() << name << ": " << failure.text << Qt::endl;
        return failure.status;
    }
}

} // namespace NelvoDevkit
