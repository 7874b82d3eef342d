#pragma once

#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

namespace NelvoDevkit {

//! \brief What nelvo-launch was told on its command line.
struct LaunchOptions {
    //! What becomes of the host once it has told something, or has not.
    enum class Afterwards {
        Leave, //!< it stays
        End,   //!< it is ended
        Await, //!< it is waited for, and ended only if it has not told anything
    };

    QString user;
    //! Lower-case hexadecimal MD5 of the password.
    QString passwordMd5;
    QString url;
    //! Names nobody else uses, unless others were asked for.
    QString eventName;
    QString mappingName;
    QString enterprise;
    //! The program to start.
    QString host;
    std::chrono::seconds patience{60};
    Afterwards afterwards = Afterwards::Leave;

    //! Reads the arguments, the program's name first. Returns nothing if they ask for the help, which is then
    //! printed. Throws a Failure for wrong usage.
    static std::optional<LaunchOptions> parse(const QStringList& arguments);

    //! The six texts that ask a host to sign in, as its one argument.
    QString hostArgument() const;
};

} // namespace NelvoDevkit
