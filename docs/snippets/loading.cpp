#include "docs/snippets/loading.h"

#include <NelvoSDK/LoadPlugin.h>

#include <QDebug>

namespace Snippets {

//! [load]
NelvoSDK::INelvoSDKPlugin* loadPlugin(const QString& directory)
{
    QString error;
    NelvoSDK::INelvoSDKPlugin* const plugin = NelvoSDK::LoadPlugin(directory, &error);
    if (!plugin)
        qCritical().noquote() << "no plug-in:" << error;
    return plugin;
}
//! [load]

} // namespace Snippets
