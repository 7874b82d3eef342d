#include "endprogram.h"

#include <QProcess>

#include <windows.h>

//! Gives the program its own console, because Ctrl+C reaches every program of a console.
void prepareToEnd(QProcess& program)
{
    program.setCreateProcessArgumentsModifier(
        [](QProcess::CreateProcessArguments* arguments) { arguments->flags |= CREATE_NO_WINDOW; });
}

bool askToEnd(QProcess& program)
{
    return QProcess::execute(QStringLiteral(INTERRUPTER), {QString::number(program.processId())}) == 0;
}
