#pragma once

#include <NelvoSDK/LoginSession.h>

#include <QVariantList>

namespace NelvoDevkit {

//! \brief A session as rows for the window: a list of maps with "label" (for the user), "field" (the name in
//!   LoginSession) and "value". Every field has a row, even if it is empty.
QVariantList describeSession(const NelvoSDK::LoginSession& session);

} // namespace NelvoDevkit
