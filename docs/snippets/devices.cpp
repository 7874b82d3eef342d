#include "docs/snippets/devices.h"

#include <QUrl>

namespace Snippets {

//! [bindings]
void uploadDevices(NelvoSDK::IProjectInfoMgr& manager, const QString& sceneProjectId,
                   const QMap<QString, QString>& serialOfComponent)
{
    // The library appends the id to a path without escaping it.
    const QString pathPart = QString::fromLatin1(QUrl::toPercentEncoding(sceneProjectId));
    manager.OnUploadSdkProperty(pathPart, serialOfComponent);
}
//! [bindings]

} // namespace Snippets
