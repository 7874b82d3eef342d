#pragma once

namespace TestSupport {

//! Whether this is a program for Windows that Wine runs.
bool isUnderWine();

//! Why what begins with a reset is skipped there. A client on Windows learns of a reset, and so does a client
//! elsewhere of one that the simulator makes under Wine.
constexpr const char* const ResetsGoUnnoticed = "Wine 8 loses some connection resets";

} // namespace TestSupport
