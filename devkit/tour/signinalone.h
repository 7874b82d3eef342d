#pragma once

#include <QString>

namespace NelvoDevkit {

//! signInAlone prints this line after the sign-in.
inline constexpr char SignedInLine[] = "tour: signed in";

//! \brief Signs in through the open login window and then does nothing more.
//!
//! `account` is a user and a password separated by a colon. Call it from the event loop. Ends the application
//! with status 1 if the sign-in fails.
void signInAlone(const QString& account);

} // namespace NelvoDevkit
