#pragma once

namespace NelvoDevkit {

class UiDriver;

//! Visits a host that another program has started with its sign-in: no login window, the enterprise of the
//! account in the host's window.
void visitCommandLine(UiDriver& ui);

} // namespace NelvoDevkit
