#include "docs/snippets/loading.h"

#include <QLibrary>

namespace Snippets {

//! [load]
NelvoSDK::INelvoSDKPlugin* loadPlugin(const QString& directory, QString& error)
{
    QLibrary library(directory + QStringLiteral("/NelvoPlugin")); // QLibrary adds prefix and suffix
    library.setLoadHints(QLibrary::PreventUnloadHint);
    const auto getPlugin =
        reinterpret_cast<NelvoSDK::GetNelvoSDKPluginFunction>(library.resolve("GetNelvoSDKPlugin"));
    if (getPlugin)
        return getPlugin();
    error = library.errorString();
    return nullptr;
}
//! [load]

} // namespace Snippets
