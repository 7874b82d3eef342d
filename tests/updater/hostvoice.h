#pragma once

#include <QString>
#include <QtGlobal>

//! \file
//! \brief How a small host reports its events to an Installation.

//! The current state of the host as one text. Each host defines this function.
QString knowledge();

//! Writes a line to the standard output: the event, a tab, and the state of the host.
void say(const QString& event);
//! A message handler that writes each log line as an event, with the category in front unless it is the
//! default.
void sayMessage(QtMsgType type, const QMessageLogContext& context, const QString& text);
//! Writes NAME.started beside the program, with the number of arguments. Returns the host's exit status.
int leaveTrace();
