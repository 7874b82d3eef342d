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

//! \brief What the host does with the enterprise's projects: reads, creates, renames and uploads them.
//!
//! Every call of the plug-in's project manager is an order of `queue`, so none happens within another or
//! within an observer's call. What the plug-in does not tell, namely whether an upload arrived, is read
//! from the service afterwards and told in the log. Projects that exist only here live in memory.
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
    //! The unit that new projects will belong to; both empty until one is chosen.
    Q_PROPERTY(QString departmentId READ departmentId NOTIFY departmentChanged)
    Q_PROPERTY(QString departmentName READ departmentName NOTIFY departmentChanged)
    //! The project in hand, and its record as describeProject gives it; empty if there is none.
    Q_PROPERTY(QString selectedId READ selectedId NOTIFY selectionChanged)
    Q_PROPERTY(QVariantList details READ details NOTIFY detailsChanged)

public:
    //! Gives the manager its way to `plugin`. Both are not owned and live longer than the desk's last order;
    //! `plugin` is initialised.
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

    //! Installs the session of a sign-in and reads tree and projects. Local projects of another enterprise
    //! are given up.
    void openSession(const NelvoSDK::LoginSession& session);
    //! Shows nothing of the enterprise any more. Local projects stay.
    void closeSession();

    //! Reads projects and tree again. The tree is that of the sign-in: asking the service for it anew would
    //! take another ReflushProjOrgInfo, and that is for sign-ins.
    Q_INVOKABLE void refresh();
    Q_INVOKABLE void chooseDepartment(const QString& id, const QString& name);
    //! Takes a project in hand, the service's or a local one; the empty id takes none.
    Q_INVOKABLE void select(const QString& id);

    //! A new local project of the chosen department. Nothing happens without one or without a name.
    Q_INVOKABLE void createProject(const QString& name);
    Q_INVOKABLE void renameLocalProject(const QString& id, const QString& name);
    Q_INVOKABLE void removeLocalProject(const QString& id);
    //! Brings a local project to the service. If it does not arrive, it stays a local one.
    Q_INVOKABLE void uploadLocalProject(const QString& id);
    //! Uploads a project of the service under another name.
    Q_INVOKABLE void renameServerProject(const QString& id, const QString& name);
    //! Uploads the bound devices of the project in hand.
    Q_INVOKABLE void uploadBindings();

Q_SIGNALS:
    void readyChanged();
    void departmentChanged();
    void selectionChanged();
    void detailsChanged();
    //! The manager has the session of a sign-in. Its tree begins with that many first-level units of
    //! earlier ones. Told from within an order.
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
    //! How many first-level units of earlier sign-ins the manager's tree begins with.
    std::size_t m_earlierUnits = 0;
    QString m_departmentId;
    QString m_departmentName;
    QString m_selectedId;
    QVariantList m_details;
};

} // namespace NelvoDevkit
