#pragma once

#include "launch/launchoptions.h"

namespace NelvoDevkit {

//! Exit status of nelvo-launch.
enum class LaunchStatus {
    Signalled,   //!< the host has set the event: the sign-in has ended
    NotStarted,  //!< a name is in use, or the host cannot be started
    WrongUsage,  //!< the command line is wrong
    TimedOut,    //!< the host has not set the event in time
    HostEnded,   //!< the host has ended and has not set the event
    Interrupted, //!< the user interrupted the wait
};

//! \brief Starts the host with a sign-in, waits for the event and prints the result.
//!
//! Returns the exit status of the program: a LaunchStatus, or the status of the host if the program waited
//! for its end.
int launch(const LaunchOptions& options);

} // namespace NelvoDevkit
