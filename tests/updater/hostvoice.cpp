#include "tests/updater/hostvoice.h"

#include <QCoreApplication>
#include <QSaveFile>

#include <cstdio>
#include <cstdlib>

void say(const QString& event)
{
    std::printf("%s\t%s\n", qUtf8Printable(event), qUtf8Printable(knowledge()));
    std::fflush(stdout);
}

void sayMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    const QLatin1String category(context.category);
    const QString place = category == QLatin1String("default") ? QString() : category + QLatin1Char(' ');
    say(QStringLiteral("log %1 ").arg(type) + place + text);
}

//! Tests wait for the file, so it appears only when it is complete.
int leaveTrace()
{
    QSaveFile trace(QCoreApplication::applicationFilePath() + QStringLiteral(".started"));
    if (!trace.open(QIODevice::WriteOnly))
        return EXIT_FAILURE;
    const int arguments = QCoreApplication::arguments().size() - 1;
    trace.write("started with " + QByteArray::number(arguments) + " arguments\n");
    return trace.commit() ? EXIT_SUCCESS : EXIT_FAILURE;
}
