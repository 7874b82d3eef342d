#include "docs/snippets/projects.h"

#include <algorithm>

namespace Snippets {

namespace {

//! [on-service]
bool isOnService(NelvoSDK::IProjectInfoMgr& manager, const NelvoSDK::ProjectNode& project)
{
    const auto projects = listProjects(manager);
    return projects && std::any_of(projects->begin(), projects->end(), [&](const auto& listed) {
               return listed.id == project.id && listed.name == project.name;
           });
}
//! [on-service]

} // namespace

//! [list]
std::optional<std::list<NelvoSDK::ProjectNode>> listProjects(NelvoSDK::IProjectInfoMgr& manager)
{
    std::list<NelvoSDK::ProjectNode> projects; // the call appends: start with an empty list
    if (!manager.GetServerProjectTree(projects))
        return std::nullopt;
    return projects;
}
//! [list]

//! [upload]
bool uploadNewProject(NelvoSDK::IProjectInfoMgr& manager, const NelvoSDK::ProjectNode& project)
{
    // `project` has an id that the host made, and "deptId" in its attrs.
    manager.AddLocalProject({project.id, project.name, project.attrs});
    manager.OnUploadProject(project, nullptr, true);
    return isOnService(manager, project);
}

bool renameProject(NelvoSDK::IProjectInfoMgr& manager, NelvoSDK::ProjectNode project,
                   const std::wstring& name)
{
    // `project` is an entry of the last list.
    project.name = name;
    manager.OnUploadProject(project, nullptr, true);
    return isOnService(manager, project);
}
//! [upload]

} // namespace Snippets
