#pragma once

#include <NelvoSDK/LoginSession.h>
#include <NelvoSDK/ProjectRecords.h>

#include <QMap>
#include <QString>

#include <list>
#include <string>

namespace NelvoSDK {

class INelvoSDKPlugin;

//! \brief The enterprise's scene projects and organisation tree. From INelvoSDKPlugin::GetProjectInfoMgr.
//!
//! Calling order: SetPlugin once, then ReflushProjOrgInfo with the session of a sign-in, then the other
//! operations. GUI thread only. An operation that sends a request returns when the service has replied. It
//! has no timeout, and the GUI thread processes events meanwhile: timers and event handlers of the host can
//! run inside it. Do not call the manager from them.
class IProjectInfoMgr
{
public:
    //! Installs a session: replaces the cookies of the plug-in by those of the session, sets dynamic
    //! properties of the application ("sdkAddr"; "iotToken" if it is not empty; "epId" if the session has
    //! one), reads the organisation tree from the service, and starts a watch of the session (see
    //! IMessageObserver). If the request for the tree fails, the library logs it and keeps the earlier tree.
    //!
    //! Call it once for each sign-in. Each further call starts one more watch, which never stops, and appends
    //! the first level of the tree once more. A watch sends a request every ten seconds, and the library
    //! keeps each reply in memory, about 8 kB: about 70 MB a day for each watch.
    //! \param session the session of ILoginObserver::OnLoginSucceeded; copied. If its cookies are empty, see
    //!   docs/integration.md.
    virtual void ReflushProjOrgInfo(const LoginSession& session) = 0;
    //! Does nothing; called by INelvoSDKPlugin::Shutdown.
    virtual void Shutdown() = 0;
    //! The plug-in object.
    //! \return the pointer of the last SetPlugin, null at first.
    virtual INelvoSDKPlugin* GetPlugin() = 0;
    //! Sets the plug-in object, through which the manager reaches the message manager. Required before
    //! ReflushProjOrgInfo.
    //! \param plugin the plug-in object, not owned.
    virtual void SetPlugin(INelvoSDKPlugin* plugin) = 0;
    //! Reads the enterprise's scene projects from the service and keeps a copy of the list for
    //! GetProjectInfo, AddLocalProject and OnUploadProject.
    //! \param[in,out] projects the operation appends the projects, sorted by id; it does not clear the list.
    //! \return false if the request failed or the reply is not JSON; `projects` is then unchanged.
    virtual bool GetServerProjectTree(std::list<ProjectNode>& projects) = 0;
    //! Copies the organisation tree of the last successful ReflushProjOrgInfo. Sends no request.
    //! \param[out] root a new node, which becomes the root of the tree; it stays empty if there is no tree
    //!   yet.
    //! \return always true.
    virtual bool GetOrgTree(OrgTreeNode& root) = 0;
    //! Removes the projects of other enterprises: those whose attrs have no "epId", or another "epId" than
    //! the session. Sends no request.
    //! \param[in,out] projects the host's projects.
    //! \throws std::out_of_range at the first project with an "epId", if the session has none.
    virtual void RemoveForeignProjects(std::list<ProjectRef>& projects) = 0;
    //! Looks up a project, first in the list of the last GetServerProjectTree, then among the announced
    //! projects. Sends no request.
    //! \param id the project's id.
    //! \param[in,out] project receives id, name and the enterprise ("epId" and "epName" in attrs). If the id
    //!   is unknown, `project` is unchanged.
    //! \throws std::out_of_range if the id is known and the session has no "epId" or no "epName".
    virtual void GetProjectInfo(const std::wstring id, ProjectRef& project) = 0;
    //! Announces a project that exists only in the host so far: OnUploadProject will add it. Sends no
    //! request.
    //! \param project with "deptId" and "deptName" in attrs; copied. Ignored if its id is empty, is already
    //!   announced, or is in the list of the last GetServerProjectTree.
    virtual void AddLocalProject(const ProjectRef& project) = 0;
    //! Withdraws an announced project. Sends no request.
    //! \param id the project's id; an unknown id is ignored.
    virtual void RemoveLocalProject(const std::wstring id) = 0;
    //! Sends a project to the service: adds an announced project; renames a project of the last
    //! GetServerProjectTree if its name differs; ignores any other project and logs nothing. The announcement
    //! is withdrawn before the request. A failed request is only logged: read the list again to check.
    //! \param project the project with its new name. To add a project, "deptId" must be in attrs.
    //! \param reserved ignored.
    //! \param upload false does nothing.
    //! \throws std::out_of_range if an announced project has no "deptId".
    virtual void OnUploadProject(const ProjectNode& project, void* reserved, bool upload) = 0;
    //! Deletes the equipment bindings of a scene project and adds new ones: the devices of its components.
    //! The request contains one empty object for each binding, so the service receives their number only. A
    //! failure is only logged. If the deletion fails, the operation adds no bindings.
    //! \param sceneProjId the scene project's id. It becomes part of the request's address without percent
    //!   encoding.
    //! \param deviceSerials the serial number of each component's device, by the component's GUID.
    virtual void OnUploadSdkProperty(const QString& /*sceneProjId*/,
                                     const QMap<QString, QString>& /*deviceSerials*/)
    {}
    //! Does nothing; keeps its place in the interface.
    virtual void ReservedFirst() = 0;
    //! Does nothing; keeps its place in the interface.
    virtual void ReservedSecond() = 0;

    //! Only the plug-in deletes the manager.
    virtual ~IProjectInfoMgr() = default;
};

} // namespace NelvoSDK
