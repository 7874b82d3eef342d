#pragma once

#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

namespace NelvoDevkit {

//! \brief What nelvo-probe was told on its command line and in its environment.
struct ProbeOptions {
    //! With scheme, without a trailing slash.
    QString url;
    QString user;
    //! Nothing if the terminal is to be asked for it.
    std::optional<QString> password;
    //! The account's first one if there is none.
    std::optional<int> enterprise;
    //! The folders in which the plug-in is looked for, one after the other.
    QStringList pluginFolders;
    //! PEM file of certificates to trust besides the system's; may be empty.
    QString certificateFile;
    //! Base address of the update service; empty if that is not to be asked.
    QString updateUrl;
    QString updateToken;
    QString product;
    std::chrono::seconds patience{60};
    bool json = false;
    //! File for the report; empty if none is wanted.
    QString reportFile;

    //! Reads the arguments, the program's name first, and the environment. Returns nothing if they ask for
    //! the help, which is then printed. Throws a Failure for wrong usage.
    static std::optional<ProbeOptions> parse(const QStringList& arguments);
};

} // namespace NelvoDevkit
