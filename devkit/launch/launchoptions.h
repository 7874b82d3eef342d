#pragma once

#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

namespace NelvoDevkit {

//! \brief The options of nelvo-launch.
struct LaunchOptions {
    //! What happens to the host after it has set the event, or after a failure.
    enum class Afterwards {
        Leave, //!< the host continues
        End,   //!< the host is ended
        Await, //!< the program waits for the end of the host; the host is ended only after a failure
    };

    QString user;
    //! Lower-case hexadecimal MD5 of the password.
    QString passwordMd5;
    QString url;
    //! A unique name, unless an option sets it.
    QString eventName;
    QString mappingName;
    QString enterprise;
    //! The program that is started.
    QString host;
    std::chrono::seconds patience{60};
    Afterwards afterwards = Afterwards::Leave;

    //! Reads the arguments, beginning with the program's name. Prints the help and returns nothing if the
    //! arguments request it. Throws a Failure for wrong usage.
    static std::optional<LaunchOptions> parse(const QStringList& arguments);

    //! The sign-in as the host's only argument: six texts.
    QString hostArgument() const;
};

} // namespace NelvoDevkit
