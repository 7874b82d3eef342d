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
    //! Installs a session: its cookies replace those of the process, the application's dynamic
    //! properties are set ("sdkAddr"; "iotToken" if it is not empty; "epId" if the session has it), the
    //! organisation tree is read, and the session is watched from then on (see IMessageObserver). Each
    //! further call starts one more watch and adds the tree's first level once more. A service that does
    //! not answer is logged and leaves the tree as it was.
    //!
    //! A watch asks every ten seconds and keeps what Qt holds of each reply, about 8 kB: some 70 MB a day
    //! for each call of this operation, so call it once for each sign-in.
    virtual void ReflushProjOrgInfo(const LoginSession& session) = 0;
    //! Does nothing; called by INelvoSDKPlugin::Shutdown.
    virtual void Shutdown() = 0;
    //! The pointer of the last SetPlugin, null at first.
    virtual INelvoSDKPlugin* GetPlugin() = 0;
    //! Gives the manager its way back to the plug-in object. Not owned; required before
    //! ReflushProjOrgInfo.
    virtual void SetPlugin(INelvoSDKPlugin* plugin) = 0;
    //! Reads the enterprise's scene projects from the service and appends them to `projects`, ordered
    //! by id; `projects` is not cleared. False when the service did not answer with JSON; `projects` is
    //! then untouched.
    virtual bool GetServerProjectTree(std::list<ProjectNode>& projects) = 0;
    //! Fills `root`, which must be a fresh node, with the organisation tree of the last successful
    //! ReflushProjOrgInfo, or with an empty root before that. Always true.
    virtual bool GetOrgTree(OrgTreeNode& root) = 0;
    //! Removes from `projects` those that do not belong to the session's enterprise: whose attrs lack
    //! "epId" or hold another one. Throws std::out_of_range at the first one that has an "epId" if the
    //! session has none.
    virtual void RemoveForeignProjects(std::list<ProjectRef>& projects) = 0;
    //! Looks a project up by id, first among the service's, then among the announced ones, and sets id,
    //! name and the enterprise ("epId", "epName" in attrs) of `project`. An unknown id leaves `project`
    //! as it came. Throws std::out_of_range if the session names no enterprise.
    virtual void GetProjectInfo(const std::wstring id, ProjectRef& project) = 0;
    //! Announces a project that exists only in the host so far, with "deptId" and "deptName" in attrs.
    //! Ignored if the id is empty, already announced, or known from the service.
    virtual void AddLocalProject(const ProjectRef& project) = 0;
    //! Withdraws an announced project; an unknown id is ignored.
    virtual void RemoveLocalProject(const std::wstring id) = 0;
    //! Brings a project to the service when `upload` is true: an announced one is added (attrs must
    //! hold "deptId", or std::out_of_range is thrown), a known one whose name differs is renamed,
    //! anything else is left alone. `reserved` is ignored. A failure is only logged.
    virtual void OnUploadProject(const ProjectNode& project, void* reserved, bool upload) = 0;
    //! Deletes the equipment bindings of a scene project and announces as many new ones as
    //! `deviceSerials` has entries (component's GUID to serial number of its device). The service learns
    //! their number only. A failure is only logged.
    virtual void OnUploadSdkProperty(const QString& /*sceneProjId*/,
                                     const QMap<QString, QString>& /*deviceSerials*/)
    {}
    //! Does nothing; keeps its place in the interface.
    virtual void ReservedFirst() = 0;
    //! Does nothing; keeps its place in the interface.
    virtual void ReservedSecond() = 0;

    virtual ~IProjectInfoMgr() = default;
};

} // namespace NelvoSDK
