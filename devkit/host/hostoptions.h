#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace NelvoDevkit {

//! Values of HostOptions::updateCheck.
inline const QString CheckAtStart = QStringLiteral("start");
inline const QString CheckAtSignIn = QStringLiteral("sign-in");

//! Values of HostOptions::stations.
inline const QString InterruptedUpdate = QStringLiteral("interrupted-update");
inline const QString ResumedUpdate = QStringLiteral("resumed-update");
inline const QString FinishedUpdate = QStringLiteral("finished-update");

//! \brief What the host itself was told on its command line.
//!
//! Exactly one argument is a sign-in for the plug-in, so each option of the host comes with a value and
//! the host's arguments are always an even number.
struct HostOptions {
    //! Settings file; empty for the one beside the executable.
    QString settingsFile;
    //! Folder for the pictures of a tour; empty when a person drives the windows.
    QString tourDirectory;
    //! Ready file of the service simulator that the tour signs in to.
    QString servicesFile;
    //! User and password, with a colon between, to sign in by itself; empty when a person signs in.
    QString account;
    //! When to check for a newer release by itself; empty for when the user asks.
    QString updateCheck;
    //! Stations of the update that a tour visits in place of all others; empty for those.
    QString stations;

    //! Reads the arguments, the program's name first. A single argument is left to the plug-in. On
    //! failure returns nothing and tells why in `error`.
    static std::optional<HostOptions> parse(const QStringList& arguments, QString* error);

    //! How to call the host, for the user.
    static QString usage();
};

} // namespace NelvoDevkit
