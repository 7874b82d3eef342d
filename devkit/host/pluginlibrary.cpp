#include "host/pluginlibrary.h"

#include <QDir>
#include <QLibrary>

namespace NelvoDevkit {

NelvoSDK::INelvoSDKPlugin* loadPlugin(const QString& directory, QString* error)
{
    // Without prefix and suffix: QLibrary adds those of the system.
    QLibrary library(QDir(directory).filePath(QStringLiteral("NelvoPlugin")));
    library.setLoadHints(QLibrary::PreventUnloadHint);
    if (!library.load()) {
        *error = library.errorString();
        return nullptr;
    }
    const auto getPlugin =
        reinterpret_cast<NelvoSDK::GetNelvoSDKPluginFunction>(library.resolve("GetNelvoSDKPlugin"));
    if (!getPlugin) {
        *error = QStringLiteral("%1 does not export GetNelvoSDKPlugin").arg(library.fileName());
        return nullptr;
    }
    return getPlugin();
}

} // namespace NelvoDevkit
