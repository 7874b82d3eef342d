#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>
#include <QTextStream>

#include <functional>

namespace NelvoDevkit {

//! \brief The reason why a program of the devkit fails. Code below runProgram throws it.
struct Failure {
    //! The message for the user.
    QString text;
    //! The exit status of the program.
    int status = 1;
};

//! The failure for wrong arguments: status 2, and a text that ends with a hint to the help.
Failure wrongUsage(const QString& reason);

//! The standard output and the standard error, both as UTF-8. Not thread-safe.
QTextStream& output();
QTextStream& errorOutput();

//! Adds an option with a value; `value` names it in the help.
void addOption(QCommandLineParser& parser, const char* name, const char* value, const char* description);

//! Reads the arguments, beginning with the program's name. Prints the help and returns false if the arguments
//! request it. Throws wrongUsage for an unknown option or a missing value.
bool readArguments(QCommandLineParser& parser, const QStringList& arguments);
//! Throws wrongUsage for an argument that is neither an option nor a value.
void refuseLooseArguments(const QCommandLineParser& parser);

//! Runs a program and returns its exit status. Prints the text of a Failure on the standard error, after the
//! name.
int runProgram(const char* name, const std::function<int()>& program);

} // namespace NelvoDevkit
