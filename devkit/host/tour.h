#pragma once

namespace NelvoDevkit {

struct HostOptions;

//! \brief Walks through the plug-in's and the host's windows as a person would, with mouse and keys.
//!
//! Call it from the event loop, with the login window open and a clean account cache. The options tell the
//! folder for the pictures, the ready file of the nelvo-services to sign in to, whose address the login
//! window must offer, and perhaps which stations to visit. Each station is checked, told on standard output
//! and pictured. Ends the application: with status 0 by closing the host's window, or with 1 at the first
//! station that is not as it should be.
void runTour(const HostOptions& options);

} // namespace NelvoDevkit
