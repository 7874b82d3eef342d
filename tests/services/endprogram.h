#pragma once

class QProcess;

//! Must be called before the start of a program for which askToEnd() will be called.
void prepareToEnd(QProcess& program);

//! Asks a program without windows to end: by SIGTERM, or by Ctrl+C on Windows.
bool askToEnd(QProcess& program);
