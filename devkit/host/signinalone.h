#pragma once

#include <QString>

namespace NelvoDevkit {

//! What signInAlone writes on standard output once somebody is signed in.
inline constexpr char SignedInLine[] = "NelvoEditor: signed in";

//! \brief Signs in by itself, through the login window that is open, and leaves the host to whoever is there.
//!
//! `account` is a user and a password with a colon between them. Call it from the event loop. Ends the
//! application with status 1 if the sign-in comes to nothing.
void signInAlone(const QString& account);

} // namespace NelvoDevkit
