#include "docs/snippets/devices.h"

#include <QUrl>

namespace Snippets {

//! [bindings]
void uploadDevices(NelvoSDK::IProjectInfoMgr& manager, const QString& sceneProjectId,
                   const QMap<QString, QString>& serialOfComponent)
{
    // The id becomes the end of a path as it stands.
    const QString pathPart = QString::fromLatin1(QUrl::toPercentEncoding(sceneProjectId));
    manager.OnUploadSdkProperty(pathPart, serialOfComponent);
}
//! [bindings]

} // namespace Snippets
