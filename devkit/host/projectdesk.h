#pragma once

#include "host/devicelist.h"
#include "host/logmodel.h"
#include "host/operationqueue.h"
#include "host/orgtreemodel.h"
#include "host/projectlist.h"

#include <NelvoSDK/IProjectInfoMgr.h>
#include <NelvoSDK/LoginSession.h>

#include <QObject>
#include <QVariantList>

namespace NelvoDevkit {

//! \brief The host's part of the enterprise's projects: reads, creates, renames and uploads them.
//!
//! Every call of the plug-in's project manager is an operation of `queue`, so none happens inside another
//! call or inside an observer's call. The plug-in does not report whether an upload succeeded: the desk reads
//! the list from the service afterwards and logs the result. Local projects exist in memory only.
class ProjectDesk : public QObject
{
    Q_OBJECT
    Q_PROPERTY(NelvoDevkit::OperationQueue* queue READ queue CONSTANT)
    Q_PROPERTY(NelvoDevkit::OrgTreeModel* tree READ tree CONSTANT)
    Q_PROPERTY(NelvoDevkit::ProjectList* serverProjects READ serverProjects CONSTANT)
    Q_PROPERTY(NelvoDevkit::ProjectList* localProjects READ localProjects CONSTANT)
    Q_PROPERTY(NelvoDevkit::DeviceList* devices READ devices CONSTANT)
    //! Whether there is a session with an editor service.
    Q_PROPERTY(bool ready READ isReady NOTIFY readyChanged)
    //! The unit of new projects; both texts are empty until the user chooses one.
    Q_PROPERTY(QString departmentId READ departmentId NOTIFY departmentChanged)
    Q_PROPERTY(QString departmentName READ departmentName NOTIFY departmentChanged)
    //! The selected project, and its record as rows of describeProject; empty if none is selected.
    Q_PROPERTY(QString selectedId READ selectedId NOTIFY selectionChanged)
    Q_PROPERTY(QVariantList details READ details NOTIFY detailsChanged)

public:
    //! Sets `plugin` in the project manager. Owns neither argument; both must outlive the desk's last
    //! operation. The plug-in must be initialised.
    ProjectDesk(NelvoSDK::INelvoSDKPlugin& plugin, LogModel& log);

    OperationQueue* queue() { return &m_queue; }
    OrgTreeModel* tree() { return &m_tree; }
    ProjectList* serverProjects() { return &m_serverProjects; }
    ProjectList* localProjects() { return &m_localProjects; }
    DeviceList* devices() { return &m_devices; }
    bool isReady() const { return m_ready; }
    QString departmentId() const { return m_departmentId; }
    QString departmentName() const { return m_departmentName; }
    QString selectedId() const { return m_selectedId; }
    QVariantList details() const { return m_details; }

    //! Installs the session of a sign-in and reads the tree and the projects. Drops local projects of another
    //! enterprise.
    void openSession(const NelvoSDK::LoginSession& session);
    //! Hides the data of the enterprise. Local projects remain.
    void closeSession();

    //! Reads the projects again, and shows the tree of the sign-in: only ReflushProjOrgInfo reads the tree,
    //! and it is called once for each sign-in.
    Q_INVOKABLE void refresh();
    Q_INVOKABLE void chooseDepartment(const QString& id, const QString& name);
    //! Selects a project of the service or a local project; an empty id selects none.
    Q_INVOKABLE void select(const QString& id);

    //! Creates a local project in the chosen department. No effect without a department or a name.
    Q_INVOKABLE void createProject(const QString& name);
    Q_INVOKABLE void renameLocalProject(const QString& id, const QString& name);
    Q_INVOKABLE void removeLocalProject(const QString& id);
    //! Uploads a local project to the service. If this fails, the project remains local.
    Q_INVOKABLE void uploadLocalProject(const QString& id);
    //! Uploads a project of the service with another name.
    Q_INVOKABLE void renameServerProject(const QString& id, const QString& name);
    //! Uploads the bound devices of the selected project.
    Q_INVOKABLE void uploadBindings();

Q_SIGNALS:
    void readyChanged();
    void departmentChanged();
    void selectionChanged();
    void detailsChanged();
    //! The manager has installed the session of a sign-in. Its tree begins with this number of first-level
    //! units of earlier sign-ins. Emitted inside an operation of the queue.
    void sessionInstalled(int earlierUnits);

private:
    void installSession(const NelvoSDK::LoginSession& session);
    void dropForeignProjects();
    void readTree();
    bool readProjects();
    void dropUploadedProjects();
    void showDetails();
    QString enterpriseOf(const QString& id);
    void announce(const NelvoSDK::ProjectNode& project);
    void setReady(bool ready);
    std::size_t firstLevelSize();

    NelvoSDK::IProjectInfoMgr& m_manager;
    LogModel& m_log;
    OperationQueue m_queue;
    OrgTreeModel m_tree;
    ProjectList m_serverProjects;
    ProjectList m_localProjects;
    DeviceList m_devices;

    NelvoSDK::LoginSession m_session;
    bool m_ready = false;
    //! The number of first-level units of earlier sign-ins at the beginning of the manager's tree.
    std::size_t m_earlierUnits = 0;
    QString m_departmentId;
    QString m_departmentName;
    QString m_selectedId;
    QVariantList m_details;
};

} // namespace NelvoDevkit
