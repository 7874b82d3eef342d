#pragma once

#include <QString>

namespace NelvoDevkit {

//! Values of TourSettings::stations.
inline const QString AllWindows = QStringLiteral("windows");
inline const QString CommandLine = QStringLiteral("command-line");
inline const QString InterruptedUpdate = QStringLiteral("interrupted-update");
inline const QString ResumedUpdate = QStringLiteral("resumed-update");
inline const QString FinishedUpdate = QStringLiteral("finished-update");
inline const QString RestartedUpdate = QStringLiteral("restarted-update");

//! The environment variables of a tour.
inline constexpr char StationsVariable[] = "NELVO_TOUR";
inline constexpr char PicturesVariable[] = "NELVO_TOUR_PICTURES";
inline constexpr char ServicesVariable[] = "NELVO_TOUR_SERVICES";
inline constexpr char AccountVariable[] = "NELVO_TOUR_ACCOUNT";

//! \brief Visits the windows of this host process with mouse and keys.
//!
//! Call it from the event loop. The host has opened the login window with an empty account cache and the
//! address of the simulator. `stations` names the part of the tour. Each station is checked, printed and
//! saved as a picture. Ends the application: with status 0 by closing the host's window, or with 1 at the
//! first station that fails. The environment contains the folder for the pictures and, for all windows, the
//! ready file of the running nelvo-services.
void runTour(const QString& stations);

} // namespace NelvoDevkit
