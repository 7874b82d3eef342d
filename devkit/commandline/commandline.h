#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>
#include <QTextStream>

#include <functional>

namespace NelvoDevkit {

//! \brief Why a program of the devkit ends without success. Thrown below runProgram.
struct Failure {
    //! For the user.
    QString text;
    //! The status that the program exits with.
    int status = 1;
};

//! The failure of wrong arguments: status 2, and a text that ends in how to get the help.
Failure wrongUsage(const QString& reason);

//! The standard output and the standard error, both as UTF-8. Not for use by several threads.
QTextStream& output();
QTextStream& errorOutput();

//! Adds an option with a value; `value` names it in the help.
void addOption(QCommandLineParser& parser, const char* name, const char* value, const char* description);

//! Reads the arguments, the program's name first. False if they ask for the help, which is then printed.
//! Throws wrongUsage for an unknown option and a missing value.
bool readArguments(QCommandLineParser& parser, const QStringList& arguments);
//! Throws wrongUsage for an argument that belongs to no option.
void refuseLooseArguments(const QCommandLineParser& parser);

//! Runs a program and returns its status. The text of a Failure goes to the standard error, after the name.
int runProgram(const char* name, const std::function<int()>& program);

} // namespace NelvoDevkit
