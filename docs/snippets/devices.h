#pragma once

#include <NelvoSDK/IProjectInfoMgr.h>

namespace Snippets {

void uploadDevices(NelvoSDK::IProjectInfoMgr& manager, const QString& sceneProjectId,
                   const QMap<QString, QString>& serialOfComponent);

} // namespace Snippets
