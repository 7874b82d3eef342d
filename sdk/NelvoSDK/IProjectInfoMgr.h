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
//! Calling order: SetPlugin once, then ReflushProjOrgInfo with the session of a sign-in, then the rest.
//! GUI thread only. Operations that reach the service block their caller without a time limit while
//! they pump its events, so timers and event handlers of the host can run inside them; do not call
//! back into the manager from there.
class IProjectInfoMgr
{
public:
    //! Installs a session: its cookies replace those of the plug-in, the application's dynamic
    //! properties are set ("sdkAddr"; "iotToken" if it is not empty; "epId" if the session has it), the
    //! organisation tree is read, and the session is watched from then on (see IMessageObserver). Each
    //! further call starts one more watch and adds the tree's first level once more. A service that does
    //! not answer is logged and leaves the tree as it was.
    //!
    //! A watch asks every ten seconds and keeps what Qt holds of each reply, about 8 kB: some 70 MB a day
    //! for each call of this operation, so call it once for each sign-in.
    //! \param session the record that ILoginObserver::OnLoginSucceeded brought, unchanged; it is copied.
    virtual void ReflushProjOrgInfo(const LoginSession& session) = 0;
    //! Does nothing; called by INelvoSDKPlugin::Shutdown.
    virtual void Shutdown() = 0;
    //! What SetPlugin has kept.
    //! \return the pointer of the last SetPlugin, null at first.
    virtual INelvoSDKPlugin* GetPlugin() = 0;
    //! Gives the manager its way back to the plug-in object. Required before ReflushProjOrgInfo.
    //! \param plugin the plug-in object, not owned.
    virtual void SetPlugin(INelvoSDKPlugin* plugin) = 0;
    //! Reads the enterprise's scene projects from the service.
    //! \param[in,out] projects gets them appended, ordered by id; it is not cleared.
    //! \return false when the service did not answer with JSON; `projects` is then untouched.
    virtual bool GetServerProjectTree(std::list<ProjectNode>& projects) = 0;
    //! Copies the organisation tree of the last successful ReflushProjOrgInfo. Asks no service.
    //! \param[out] root a fresh node, which becomes the tree's root; it stays empty before there is a tree.
    //! \return always true.
    virtual bool GetOrgTree(OrgTreeNode& root) = 0;
    //! Removes the projects that do not belong to the session's enterprise: whose attrs lack "epId" or hold
    //! another one.
    //! \param[in,out] projects the host's projects.
    //! \throws std::out_of_range at the first one that has an "epId" if the session has none.
    virtual void RemoveForeignProjects(std::list<ProjectRef>& projects) = 0;
    //! Looks a project up, first among those of the last GetServerProjectTree, then among the announced ones.
    //! \param id the project's id.
    //! \param[in,out] project gets id, name and the enterprise ("epId" and "epName" in attrs). An unknown id
    //!   leaves it as it came.
    //! \throws std::out_of_range if the session names no enterprise.
    virtual void GetProjectInfo(const std::wstring id, ProjectRef& project) = 0;
    //! Announces a project that exists only in the host so far. Asks no service.
    //! \param project with "deptId" and "deptName" in attrs; it is copied. Ignored if its id is empty,
    //!   already announced, or known from the service.
    virtual void AddLocalProject(const ProjectRef& project) = 0;
    //! Withdraws an announced project. Asks no service.
    //! \param id the project's id; an unknown one is ignored.
    virtual void RemoveLocalProject(const std::wstring id) = 0;
    //! Brings a project to the service: an announced one is added, a known one whose name differs is renamed,
    //! anything else is left alone. A failure is only logged, and an announced project counts as announced no
    //! more even then; read the list again to know.
    //! \param project the project as it is to be. One that is added must hold "deptId" in attrs.
    //! \param reserved ignored.
    //! \param upload false does nothing.
    //! \throws std::out_of_range if a project that is to be added lacks "deptId".
    virtual void OnUploadProject(const ProjectNode& project, void* reserved, bool upload) = 0;
    //! Deletes the equipment bindings of a scene project and announces new ones. The service learns their
    //! number only. A failure is only logged; if deleting fails, nothing is announced.
    //! \param sceneProjId the scene project's id, which goes into the address as it stands.
    //! \param deviceSerials the serial number of each component's device, by the component's GUID.
    virtual void OnUploadSdkProperty(const QString& /*sceneProjId*/,
                                     const QMap<QString, QString>& /*deviceSerials*/)
    {}
    //! Does nothing; keeps its place in the interface.
    virtual void ReservedFirst() = 0;
    //! Does nothing; keeps its place in the interface.
    virtual void ReservedSecond() = 0;

    //! The plug-in's to call.
    virtual ~IProjectInfoMgr() = default;
};

} // namespace NelvoSDK
