#pragma once

namespace NelvoDevkit {

class UiDriver;

//! Visits a host with a sign-in from the command line: no login window, and the account's enterprise in the
//! host's window.
void visitCommandLine(UiDriver& ui);

} // namespace NelvoDevkit
