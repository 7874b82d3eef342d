#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace NelvoDevkit {

//! Values of HostOptions::updateCheck.
inline const QString CheckAtStart = QStringLiteral("start");
inline const QString CheckAtSignIn = QStringLiteral("sign-in");

//! \brief What the host itself was told on its command line.
//!
//! Exactly one argument is a sign-in for the plug-in, so each option of the host comes with a value and
//! the host's arguments are always an even number.
struct HostOptions {
    //! Settings file; empty for the one beside the executable.
    QString settingsFile;
    //! When to check for a newer release by itself; empty for when the user asks.
    QString updateCheck;

    //! Reads the arguments, the program's name first. A single argument is left to the plug-in. Returns
    //! nothing if they ask for the help, which is then printed. Throws a Failure for wrong usage.
    static std::optional<HostOptions> parse(const QStringList& arguments);

    //! How to call the host, for the user.
    static QString usage();
};

} // namespace NelvoDevkit
