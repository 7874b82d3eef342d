#pragma once

#include <QString>

namespace NelvoDevkit {

class UiDriver;

//! Fills in the login form and presses its button. Enters the first enterprise of the account if it has
//! several. Returns when the login window has closed.
void signInByForm(const UiDriver& ui, const QString& user, const QString& password);

} // namespace NelvoDevkit
