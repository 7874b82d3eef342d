#pragma once

#include <NelvoSDK/INelvoSDKPlugin.h>

#include <QString>

namespace Snippets {

//! The plug-in object of the library in that directory, or null, with the reason in the log.
NelvoSDK::INelvoSDKPlugin* loadPlugin(const QString& directory);

} // namespace Snippets
