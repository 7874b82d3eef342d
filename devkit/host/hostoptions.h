#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace NelvoDevkit {

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

    //! Reads the arguments, the program's name first. A single argument is left to the plug-in. On
    //! failure returns nothing and tells why in `error`.
    static std::optional<HostOptions> parse(const QStringList& arguments, QString* error);

    //! How to call the host, for the user.
    static QString usage();
};

} // namespace NelvoDevkit
