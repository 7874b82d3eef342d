#pragma once

#include <QString>

namespace NelvoDevkit {

//! The line that signInAlone prints after the sign-in.
inline constexpr char SignedInLine[] = "tour: signed in";

//! \brief Signs in through the login window that is open, and leaves the host to itself.
//!
//! `account` is a user and a password with a colon between them. Call it from the event loop. Ends the
//! application with status 1 if the sign-in fails.
void signInAlone(const QString& account);

} // namespace NelvoDevkit
