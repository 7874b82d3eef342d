#pragma once

namespace TestSupport {

//! Makes a crash end this process at once. Otherwise Windows shows a dialog and waits for the user.
void disableCrashDialog();

} // namespace TestSupport
