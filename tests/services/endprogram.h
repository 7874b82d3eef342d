#pragma once

class QProcess;

//! Call it before the start of a program that will be asked to end.
void prepareToEnd(QProcess& program);

//! Asks a program without windows to end: by SIGTERM, or by Ctrl+C on Windows.
bool askToEnd(QProcess& program);
