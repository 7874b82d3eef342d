#pragma once

#include <QString>

namespace NelvoDevkit {

//! Names the folder for the picture, in the environment: the one argument of such a host is the plug-in's.
inline constexpr char CommandLineTourVariable[] = "NELVO_COMMAND_LINE_TOUR";

//! \brief The station of the tour in a host that has signed in by its command line, as `lina` at the
//! enterprise 1003 of the simulator.
//!
//! Call it from the event loop, after the start. Ends the application as runTour does.
void runCommandLineTour(const QString& pictures);

} // namespace NelvoDevkit
