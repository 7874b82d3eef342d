#pragma once

#include <NelvoSDK/IProjectInfoMgr.h>

#include <QMap>
#include <QObject>

#include <list>
#include <string>

Q_DECLARE_INTERFACE(NelvoSDK::IProjectInfoMgr, "NelvoSDK::IProjectInfoMgr")

class QJsonObject;
class TestProjectState;

namespace NelvoPlugin {

//! \brief The editor service's data of the enterprise, and the watch of its session.
//!
//! Holds the session, a snapshot of the service's scene projects, the local projects of the host, and the
//! organisation tree. GUI thread. The calls block it and process events meanwhile, so a timer of the watch
//! can fire inside any of them; it reads only the session's address and the plug-in pointer. Code that runs
//! inside a call may delete this object: the call then returns false or has no further effect.
class CProjectInfoMgr final : public QObject, public NelvoSDK::IProjectInfoMgr
{
    Q_OBJECT
    Q_INTERFACES(NelvoSDK::IProjectInfoMgr)

public:
    CProjectInfoMgr();

    void ReflushProjOrgInfo(const NelvoSDK::LoginSession& newSession) override;
    void Shutdown() override;
    NelvoSDK::INelvoSDKPlugin* GetPlugin() override;
    void SetPlugin(NelvoSDK::INelvoSDKPlugin* newPlugin) override;
    bool GetServerProjectTree(std::list<NelvoSDK::ProjectNode>& projects) override;
    bool GetOrgTree(NelvoSDK::OrgTreeNode& root) override;
    void RemoveForeignProjects(std::list<NelvoSDK::ProjectRef>& projects) override;
    void GetProjectInfo(const std::wstring id, NelvoSDK::ProjectRef& project) override;
    void AddLocalProject(const NelvoSDK::ProjectRef& project) override;
    void RemoveLocalProject(const std::wstring id) override;
    void OnUploadProject(const NelvoSDK::ProjectNode& project, void* reserved, bool upload) override;
    void OnUploadSdkProperty(const QString& sceneProjId,
                             const QMap<QString, QString>& deviceSerials) override;
    void ReservedFirst() override;
    void ReservedSecond() override;

protected:
    //! A request of the watch, for each of the timers.
    void timerEvent(QTimerEvent* event) override;

private:
    friend class ::TestProjectState;

    //! A scene project that only the host has.
    struct LocalProject {
        std::wstring id;
        std::wstring name;
        std::wstring deptId;
        std::wstring deptName;
    };

    //! A unit of the organisation with its sub-units. Its texts are wide only in the host's copy, since there
    //! they take twice the memory.
    struct OrgUnit {
        QString value;
        QString name;
        QString parId;
        qint32 type = 1;
        std::list<OrgUnit> children;
    };

    static NelvoSDK::ProjectNode ToProjectNode(const QJsonObject& object);
    static std::list<NelvoSDK::ProjectNode> SortedNodes(const QJsonArray& elements, int begin, int end);
    static LocalProject ToLocalProject(const NelvoSDK::ProjectRef& project);
    static void WalkOrgTree(QJsonObject object, OrgUnit& node);
    static void CopyOrgTree(const OrgUnit& node, NelvoSDK::OrgTreeNode& out);
    static void BuildEquipmentBinding(const QString& sceneProjId, const QString& compGuid,
                                      const QString& serialNumber, const QJsonObject& element);

    QString baseUrl() const;
    void restoreSessionCookies() const;
    bool IsForeignProject(const NelvoSDK::ProjectRef& project) const;
    bool addProject(const NelvoSDK::ProjectNode& project) const;
    bool renameProject(const NelvoSDK::ProjectNode& project) const;

    NelvoSDK::INelvoSDKPlugin* plugin = nullptr;
    NelvoSDK::LoginSession session;
    //! Names of the scene projects that the service listed last, by id.
    QMap<std::wstring, std::wstring> serverProjects;
    QMap<std::wstring, LocalProject> localProjects;
    OrgUnit orgRoot;
};

} // namespace NelvoPlugin
