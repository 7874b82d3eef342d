#pragma once

#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

namespace NelvoDevkit {

//! \brief The options of nelvo-probe, from its command line and its environment.
struct ProbeOptions {
    //! With scheme, without a trailing slash.
    QString url;
    QString user;
    //! Nothing if the user enters it at the terminal.
    std::optional<QString> password;
    //! Nothing for the first enterprise of the account.
    std::optional<int> enterprise;
    //! The folders in which the plug-in is searched, in this order.
    QStringList pluginFolders;
    //! PEM file of trusted certificates, in addition to those of the system; may be empty.
    QString certificateFile;
    //! Base address of the update service; empty to skip it.
    QString updateUrl;
    QString updateToken;
    QString product;
    std::chrono::seconds patience{60};
    bool json = false;
    //! File for the report; empty for no report.
    QString reportFile;

    //! Reads the arguments, beginning with the program's name, and the environment. Prints the help and
    //! returns nothing if the arguments request it. Throws a Failure for wrong usage.
    static std::optional<ProbeOptions> parse(const QStringList& arguments);
};

} // namespace NelvoDevkit
