#pragma once

#include <NelvoSDK/IProjectInfoMgr.h>

#include <optional>

namespace Snippets {

std::optional<std::list<NelvoSDK::ProjectNode>> listProjects(NelvoSDK::IProjectInfoMgr& manager);
bool uploadNewProject(NelvoSDK::IProjectInfoMgr& manager, const NelvoSDK::ProjectNode& project);
bool renameProject(NelvoSDK::IProjectInfoMgr& manager, NelvoSDK::ProjectNode project,
                   const std::wstring& name);

} // namespace Snippets
