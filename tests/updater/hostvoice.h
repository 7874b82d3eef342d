#pragma once

#include <QString>
#include <QtGlobal>

//! \file
//! \brief How a host in small says what happens in it, for an Installation to read.

//! What the host knows at this moment. Each host defines it.
QString knowledge();

//! Writes an event to the standard output, and what the host knows behind a tab.
void say(const QString& event);
//! A message handler that says every log line, behind its category if that isn't the default one.
void sayMessage(QtMsgType type, const QMessageLogContext& context, const QString& text);
//! Leaves NAME.started beside the program, with the number of its arguments. The status to end with.
int leaveTrace();
