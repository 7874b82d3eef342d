#include "endprogram.h"

#include <QProcess>

void prepareToEnd(QProcess& /*program*/) {}

bool askToEnd(QProcess& program)
{
    program.terminate();
    return true;
}
