#pragma once

#include <QString>

//! \file
//! \brief The two address files that a deployment puts beside the executable. They are only read.

namespace NelvoPlugin {

//! The address offered to a user who has none: "defaultServer" of `defaultServerAddress.json`. Empty, with a
//! warning, if the file is missing or no JSON; empty if it lacks the key.
QString readDefaultServer();

//! What goes behind the editor service's address in a session: "UrlSuffix" of `ProxyUrlSuffix.json`. Empty
//! if the file is missing, no JSON, or lacks the key; nothing is logged, the file is optional.
QString readUrlSuffix();

} // namespace NelvoPlugin
