#pragma once

#include <NelvoSDK/INelvoSDKPlugin.h>

#include <QString>

namespace NelvoDevkit {

//! \brief Loads the library NelvoPlugin from `directory` and returns its plug-in object.
//!
//! The library keeps the object and stays loaded to the end of the process. On failure returns null and
//! tells why in `error`.
NelvoSDK::INelvoSDKPlugin* loadPlugin(const QString& directory, QString* error);

} // namespace NelvoDevkit
