#pragma once

namespace TestSupport {

//! Whether this program runs in Wine.
bool isUnderWine();

//! Why tests that begin with a connection reset are skipped in Wine. On Windows a client detects a reset; so
//! does a client on another system if the simulator runs in Wine.
constexpr const char* const ResetsGoUnnoticed = "Wine 8 loses some connection resets";

} // namespace TestSupport
