#pragma once

namespace TestSupport {

//! Lets a crash of this process end it at once. Windows otherwise shows a dialog and waits for a person.
void disableCrashDialog();

} // namespace TestSupport
