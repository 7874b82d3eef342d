#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace NelvoDevkit {

//! Values of HostOptions::updateCheck.
inline const QString CheckAtStart = QStringLiteral("start");
inline const QString CheckAtSignIn = QStringLiteral("sign-in");

//! \brief The options of the host itself.
//!
//! A single argument is a sign-in for the plug-in. So each option of the host has a value, and the host's
//! arguments are an even number.
struct HostOptions {
    //! Settings file; empty for the file beside the executable.
    QString settingsFile;
    //! When to check for a newer release automatically; empty if only the user starts a check.
    QString updateCheck;

    //! Reads the arguments, beginning with the program's name. Leaves a single argument to the plug-in.
    //! Prints the help and returns nothing if the arguments request it. Throws a Failure for wrong usage.
    static std::optional<HostOptions> parse(const QStringList& arguments);

    //! The help text.
    static QString usage();
};

} // namespace NelvoDevkit
