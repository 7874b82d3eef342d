#pragma once

#include "launch/launchoptions.h"

namespace NelvoDevkit {

//! Exit status of nelvo-launch.
enum class LaunchStatus {
    Told,        //!< the host has told that the sign-in has run
    NotStarted,  //!< a name is taken, or the host can't be started
    WrongUsage,  //!< the command line is wrong
    TimedOut,    //!< the host has not told anything in time
    HostEnded,   //!< the host has ended without telling anything
    Interrupted, //!< by the user, while it was waiting
};

//! \brief Starts the host with a sign-in, waits for its word and says on standard output what came of it.
//!
//! Returns the status for the program to exit with: a LaunchStatus, or that of a host whose end was awaited.
int launch(const LaunchOptions& options);

} // namespace NelvoDevkit
