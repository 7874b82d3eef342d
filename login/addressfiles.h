#pragma once

#include <QString>

//! \file
//! \brief Reads the two address files of a deployment, which are beside the executable.

namespace NelvoPlugin {

//! The address that the login window proposes to a user who has none: "defaultServer" of
//! `defaultServerAddress.json`. Returns an empty string if the file is missing or no JSON, and logs a
//! warning; also if it lacks the key.
QString readDefaultServer();

//! The text that a session appends to the editor service's address: "UrlSuffix" of `ProxyUrlSuffix.json`.
//! Returns an empty string if the file is missing, is no JSON or lacks the key, and logs nothing: the file is
//! optional.
QString readUrlSuffix();

} // namespace NelvoPlugin
