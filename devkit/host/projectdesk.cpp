#include "host/projectdesk.h"

#include "host/projectrecord.h"

#include <NelvoSDK/INelvoSDKPlugin.h>
#include <NelvoSDK/RecordKeys.h>

#include <QUuid>

#include <iterator>

namespace NelvoDevkit {

namespace RecordKeys = NelvoSDK::RecordKeys;

namespace {

bool has(const NelvoSDK::LoginSession& session, const wchar_t* key)
{
    return session.extra.count(key) > 0;
}

QString nameOf(const NelvoSDK::ProjectNode& project)
{
    return QString::fromStdWString(project.name);
}

QString idOf(const NelvoSDK::ProjectNode& project)
{
    return QString::fromStdWString(project.id);
}

} // namespace

ProjectDesk::ProjectDesk(NelvoSDK::INelvoSDKPlugin& plugin, LogModel& log)
    : m_manager(*plugin.GetProjectInfoMgr()), m_log(log)
{
    m_manager.SetPlugin(&plugin);
    connect(&m_queue, &OperationQueue::failed, this, [this](const QString& activity, const QString& reason) {
        m_log.logProblem(QStringLiteral("%1: std::out_of_range: %2").arg(activity, reason));
    });
}

void ProjectDesk::openSession(const NelvoSDK::LoginSession& session)
{
    m_queue.add(QStringLiteral("正在读取组织树和项目"), [this, session] { installSession(session); });
}

void ProjectDesk::installSession(const NelvoSDK::LoginSession& session)
{
    m_session = session;
    chooseDepartment({}, {});
    select({});
    m_tree.clear();
    m_serverProjects.replace({});
    setReady(!session.sdkAddr.empty());
    if (!m_ready) {
        m_log.logProblem(
            QStringLiteral("the session names no editor service: no tree, no projects, no watch"));
        return;
    }
    m_earlierUnits = firstLevelSize();
    m_log.logAction(QStringLiteral("IProjectInfoMgr::ReflushProjOrgInfo"));
    m_manager.ReflushProjOrgInfo(m_session);
    dropForeignProjects();
    readTree();
    readProjects();
    Q_EMIT sessionInstalled(int(m_earlierUnits));
}

void ProjectDesk::closeSession()
{
    m_queue.add(QStringLiteral("正在清除会话"), [this] {
        setReady(false);
        chooseDepartment({}, {});
        select({});
        m_tree.clear();
        m_serverProjects.replace({});
    });
}

void ProjectDesk::refresh()
{
    m_queue.add(QStringLiteral("正在刷新"), [this] {
        readTree();
        readProjects();
    });
}

void ProjectDesk::chooseDepartment(const QString& id, const QString& name)
{
    m_departmentId = id;
    m_departmentName = name;
    Q_EMIT departmentChanged();
}

void ProjectDesk::select(const QString& id)
{
    m_selectedId = id;
    m_devices.setProject(id);
    Q_EMIT selectionChanged();
    m_queue.add(QStringLiteral("正在读取项目信息"), [this] { showDetails(); });
}

void ProjectDesk::createProject(const QString& name)
{
    if (name.trimmed().isEmpty() || m_departmentId.isEmpty())
        return;
    NelvoSDK::ProjectNode project;
    project.id = QUuid::createUuid().toString(QUuid::WithoutBraces).toStdWString();
    project.name = name.trimmed().toStdWString();
    project.attrs = m_session.extra; // "epId" and "epName"
    project.attrs[RecordKeys::DeptId] = m_departmentId.toStdWString();
    project.attrs[RecordKeys::DeptName] = m_departmentName.toStdWString();
    m_queue.add(QStringLiteral("正在新建项目"), [this, project] {
        m_localProjects.append(project);
        announce(project);
        select(idOf(project));
    });
}

//! The manager keeps the first announcement of a project, so a new name needs a new announcement.
void ProjectDesk::renameLocalProject(const QString& id, const QString& name)
{
    if (name.trimmed().isEmpty())
        return;
    m_queue.add(QStringLiteral("正在改名"), [this, id, name] {
        m_localProjects.rename(id, name.trimmed());
        const NelvoSDK::ProjectNode* const project = m_localProjects.find(id);
        if (!project)
            return;
        m_log.logAction(QStringLiteral("IProjectInfoMgr::RemoveLocalProject: ") + id);
        m_manager.RemoveLocalProject(project->id);
        announce(*project);
        showDetails();
    });
}

void ProjectDesk::removeLocalProject(const QString& id)
{
    m_queue.add(QStringLiteral("正在移除项目"), [this, id] {
        m_log.logAction(QStringLiteral("IProjectInfoMgr::RemoveLocalProject: ") + id);
        m_manager.RemoveLocalProject(id.toStdWString());
        m_localProjects.remove(id);
        if (m_selectedId == id)
            select({});
    });
}

void ProjectDesk::uploadLocalProject(const QString& id)
{
    m_queue.add(QStringLiteral("正在上传项目"), [this, id] {
        const NelvoSDK::ProjectNode* const found = m_localProjects.find(id);
        if (!found)
            return;
        const NelvoSDK::ProjectNode project = *found;
        m_log.logAction(
            QStringLiteral("IProjectInfoMgr::OnUploadProject: new project \"%1\"").arg(nameOf(project)));
        m_manager.OnUploadProject(project, nullptr, true);
        // The upload has withdrawn the announcement, even if it failed.
        announce(project);
        if (!readProjects() || !m_serverProjects.find(id))
            m_log.logProblem(
                QStringLiteral("\"%1\" is not on the service; it stays local").arg(nameOf(project)));
    });
}

void ProjectDesk::renameServerProject(const QString& id, const QString& name)
{
    const QString newName = name.trimmed();
    if (newName.isEmpty())
        return;
    m_queue.add(QStringLiteral("正在上传新名称"), [this, id, newName] {
        const NelvoSDK::ProjectNode* const found = m_serverProjects.find(id);
        if (!found)
            return;
        NelvoSDK::ProjectNode project = *found;
        m_log.logAction(QStringLiteral("IProjectInfoMgr::OnUploadProject: \"%1\" becomes \"%2\"")
                            .arg(nameOf(project), newName));
        project.name = newName.toStdWString();
        m_manager.OnUploadProject(project, nullptr, true);
        const NelvoSDK::ProjectNode* const renamed = readProjects() ? m_serverProjects.find(id) : nullptr;
        if (!renamed || nameOf(*renamed) != newName)
            m_log.logProblem(QStringLiteral("the service does not call it \"%1\"").arg(newName));
    });
}

void ProjectDesk::uploadBindings()
{
    if (m_selectedId.isEmpty())
        return;
    m_queue.add(QStringLiteral("正在上传设备绑定"),
                [this, id = m_selectedId, devices = m_devices.bindings()] {
                    m_log.logAction(QStringLiteral("IProjectInfoMgr::OnUploadSdkProperty: %1 devices of %2")
                                        .arg(devices.size())
                                        .arg(id));
                    m_manager.OnUploadSdkProperty(id, devices);
                });
}

void ProjectDesk::dropForeignProjects()
{
    // Without an enterprise in the session the manager cannot compare the projects, and throws.
    if (!has(m_session, RecordKeys::EpId)) {
        m_log.logProblem(QStringLiteral("the session names no enterprise: local projects stay"));
        return;
    }
    std::list<NelvoSDK::ProjectRef> own;
    for (const NelvoSDK::ProjectNode& project : m_localProjects.projects())
        own.push_back(toRef(project));
    m_manager.RemoveForeignProjects(own);

    const std::vector<NelvoSDK::ProjectNode> all = m_localProjects.projects();
    for (const NelvoSDK::ProjectNode& project : all) {
        if (!own.empty() && own.front().id == project.id) {
            own.pop_front();
            continue;
        }
        m_log.logAction(QStringLiteral("IProjectInfoMgr::RemoveForeignProjects: \"%1\" belongs to \"%2\"")
                            .arg(nameOf(project), attribute(project, RecordKeys::EpName)));
        m_manager.RemoveLocalProject(project.id);
        m_localProjects.remove(idOf(project));
    }
}

//! Each sign-in appends its first level to that of earlier sign-ins, so only the last part is shown.
void ProjectDesk::readTree()
{
    NelvoSDK::OrgTreeNode root;
    m_manager.GetOrgTree(root);
    const std::size_t arrived = root.children.size() - m_earlierUnits;
    root.children.erase(root.children.begin(), std::next(root.children.begin(), long(m_earlierUnits)));
    const bool isNew = arrived > 0 || (m_earlierUnits == 0 && !root.id.empty());
    if (isNew)
        m_tree.setTree(root);
    else
        m_tree.clear();
    m_log.logAction(QStringLiteral("IProjectInfoMgr::GetOrgTree: %1 units").arg(m_tree.unitCount()));
    if (!isNew)
        m_log.logProblem(QStringLiteral("no organisation tree has arrived since the sign-in"));
}

std::size_t ProjectDesk::firstLevelSize()
{
    NelvoSDK::OrgTreeNode root;
    m_manager.GetOrgTree(root);
    return root.children.size();
}

bool ProjectDesk::readProjects()
{
    std::list<NelvoSDK::ProjectNode> projects;
    const bool answered = m_manager.GetServerProjectTree(projects);
    if (!answered) {
        m_log.logProblem(QStringLiteral("IProjectInfoMgr::GetServerProjectTree: false"));
        return false;
    }
    m_log.logAction(
        QStringLiteral("IProjectInfoMgr::GetServerProjectTree: %1 projects").arg(projects.size()));
    m_serverProjects.replace(
        {std::make_move_iterator(projects.begin()), std::make_move_iterator(projects.end())});
    dropUploadedProjects();
    showDetails();
    return true;
}

//! A project that the service has is no longer a local project.
void ProjectDesk::dropUploadedProjects()
{
    const std::vector<NelvoSDK::ProjectNode> local = m_localProjects.projects();
    for (const NelvoSDK::ProjectNode& project : local) {
        if (!m_serverProjects.find(idOf(project)))
            continue;
        m_manager.RemoveLocalProject(project.id);
        m_localProjects.remove(idOf(project));
    }
}

void ProjectDesk::showDetails()
{
    const NelvoSDK::ProjectNode* project = m_serverProjects.find(m_selectedId);
    if (!project)
        project = m_localProjects.find(m_selectedId);
    m_details = project ? describeProject(*project, enterpriseOf(m_selectedId)) : QVariantList();
    Q_EMIT detailsChanged();
}

QString ProjectDesk::enterpriseOf(const QString& id)
{
    // The manager throws if the session has no enterprise.
    if (!has(m_session, RecordKeys::EpId) || !has(m_session, RecordKeys::EpName))
        return {};
    NelvoSDK::ProjectRef project;
    m_manager.GetProjectInfo(id.toStdWString(), project);
    if (project.id.empty())
        return {};
    return QStringLiteral("%1（%2）")
        .arg(QString::fromStdWString(project.attrs[RecordKeys::EpName]),
             QString::fromStdWString(project.attrs[RecordKeys::EpId]));
}

void ProjectDesk::announce(const NelvoSDK::ProjectNode& project)
{
    m_log.logAction(QStringLiteral("IProjectInfoMgr::AddLocalProject: \"%1\"").arg(nameOf(project)));
    m_manager.AddLocalProject(toRef(project));
}

void ProjectDesk::setReady(bool ready)
{
    m_ready = ready;
    Q_EMIT readyChanged();
}

} // namespace NelvoDevkit
