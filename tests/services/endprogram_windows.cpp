#include "endprogram.h"

#include <QProcess>

#include <windows.h>

//! A console of its own: Ctrl+C reaches every program that shares one.
void prepareToEnd(QProcess& program)
{
    program.setCreateProcessArgumentsModifier(
        [](QProcess::CreateProcessArguments* arguments) { arguments->flags |= CREATE_NO_WINDOW; });
}

bool askToEnd(QProcess& program)
{
    return QProcess::execute(QStringLiteral(INTERRUPTER), {QString::number(program.processId())}) == 0;
}
