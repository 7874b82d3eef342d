#include "services/editordata.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

namespace NelvoDevkit {

namespace {

constexpr qint64 UsualEnterprise = 1001;

SceneProject* find(QVector<SceneProject>& projects, const QString& id)
{
    const auto found = std::find_if(projects.begin(), projects.end(),
                                    [&id](const SceneProject& project) { return project.id == id; });
    return found == projects.end() ? nullptr : &*found;
}

QJsonObject toJson(const SceneProject& project)
{
    QJsonObject object{
        {QStringLiteral("id"), project.id},         {QStringLiteral("name"), project.name},
        {QStringLiteral("deptId"), project.deptId}, {QStringLiteral("deptName"), project.deptName},
        {QStringLiteral("code"), project.code},     {QStringLiteral("proj4"), project.proj4},
        {QStringLiteral("x"), project.x},           {QStringLiteral("y"), project.y}};
    if (!project.basemap.isEmpty())
        object.insert(QStringLiteral("basemap"), project.basemap);
    return object;
}

QJsonObject toJson(const EquipmentBindings& bindings)
{
    return {{QStringLiteral("deletes"), bindings.deletes},
            {QStringLiteral("batches"), bindings.batches},
            {QStringLiteral("elements"), bindings.elements}};
}

SceneProject generatedProject(int number)
{
    SceneProject project;
    project.id = QStringLiteral("project-%1").arg(number);
    project.name = QStringLiteral("生成的项目 %1").arg(number);
    project.code = QStringLiteral("GEN-%1").arg(number);
    project.proj4 = QStringLiteral("+proj=longlat +datum=WGS84 +no_defs");
    project.x = 110 + (number % 1000) * 0.0123457;
    project.y = 25 + (number / 1000 % 1000) * 0.0123457;
    return project;
}

} // namespace

EditorData::EditorData(const Seed& seed) : m_seed(seed)
{
    reset();
}

void EditorData::reset()
{
    const std::lock_guard lock(m_mutex);
    m_bindings.clear();
    m_enterprises.clear();
    for (const EnterpriseHoldings& seeded : m_seed.holdings)
        m_enterprises[seeded.enterpriseId] = {std::make_shared<OrgTree>(seeded.organisation), seeded.projects,
                                              seeded.models};
    if (m_enterprises.empty()) {
        const OrgNode organisation = defaultOrganisation(UsualEnterprise, QStringLiteral("示范企业"));
        m_enterprises[UsualEnterprise] = {std::make_shared<OrgTree>(organisation), {}, {}};
    }
}

void EditorData::generateTree(int nodes)
{
    if (nodes <= 0)
        return;
    const auto tree = std::make_shared<OrgTree>(generatedOrganisation(nodes));
    const std::lock_guard lock(m_mutex);
    for (auto& entry : m_enterprises)
        entry.second.tree = tree;
}

void EditorData::generateProjects(int count)
{
    if (count <= 0)
        return;
    const std::lock_guard lock(m_mutex);
    for (auto& entry : m_enterprises) {
        Holdings& holdings = entry.second;
        const QVector<QString>& departments = holdings.tree->departments();
        holdings.projects.clear();
        holdings.projects.reserve(count);
        for (int number = 0; number < count; ++number) {
            SceneProject project = generatedProject(number);
            if (!departments.isEmpty())
                project.deptId = departments.at(number % departments.size());
            project.deptName = holdings.tree->nameOf(project.deptId);
            holdings.projects.append(project);
        }
    }
}

void EditorData::generateModels(int count)
{
    if (count <= 0)
        return;
    const std::lock_guard lock(m_mutex);
    for (auto& entry : m_enterprises)
        entry.second.models = generatedModels(count, entry.second.tree->departments());
}

qint64 EditorData::defaultEnterprise() const
{
    const std::lock_guard lock(m_mutex);
    return m_enterprises.count(UsualEnterprise) > 0 ? UsualEnterprise : m_enterprises.begin()->first;
}

QByteArray EditorData::treeJson(qint64 enterpriseId) const
{
    const std::lock_guard lock(m_mutex);
    return m_enterprises.at(enterpriseId).tree->json();
}

QVector<SceneProject> EditorData::projects(qint64 enterpriseId) const
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_enterprises.find(enterpriseId);
    return found == m_enterprises.end() ? QVector<SceneProject>() : found->second.projects;
}

EditorData::Outcome EditorData::addProject(qint64 enterpriseId, SceneProject project)
{
    const std::lock_guard lock(m_mutex);
    Holdings& holdings = m_enterprises.at(enterpriseId);
    if (find(holdings.projects, project.id) != nullptr)
        return Outcome::IdIsTaken;
    project.deptName = holdings.tree->nameOf(project.deptId);
    holdings.projects.append(project);
    return Outcome::Done;
}

EditorData::Outcome EditorData::renameProject(qint64 enterpriseId, const QString& id, const QString& name)
{
    const std::lock_guard lock(m_mutex);
    SceneProject* project = find(m_enterprises.at(enterpriseId).projects, id);
    if (project == nullptr)
        return Outcome::UnknownId;
    project->name = name;
    return Outcome::Done;
}

ModelLists EditorData::models(qint64 enterpriseId) const
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_enterprises.find(enterpriseId);
    return found == m_enterprises.end() ? ModelLists() : found->second.models;
}

void EditorData::deleteBindings(const QString& projectId)
{
    const std::lock_guard lock(m_mutex);
    EquipmentBindings& bindings = m_bindings[projectId];
    ++bindings.deletes;
    bindings.elements = 0;
}

void EditorData::addBindings(const QString& projectId, int elements)
{
    const std::lock_guard lock(m_mutex);
    EquipmentBindings& bindings = m_bindings[projectId];
    ++bindings.batches;
    bindings.elements += elements;
}

EquipmentBindings EditorData::bindings(const QString& projectId) const
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_bindings.find(projectId);
    return found == m_bindings.end() ? EquipmentBindings() : found->second;
}

QJsonObject EditorData::state() const
{
    // Writing much JSON takes seconds, so the lock ends before; the copy is cheap.
    std::unique_lock lock(m_mutex);
    const auto enterprises = m_enterprises;
    const auto bindingsByProject = m_bindings;
    lock.unlock();
    QJsonObject projects;
    for (const auto& [id, holdings] : enterprises)
        projects.insert(QString::number(id), toJson(holdings.projects));
    QJsonObject bindings;
    for (const auto& [id, counters] : bindingsByProject)
        bindings.insert(id, toJson(counters));
    return {{QStringLiteral("projects"), projects}, {QStringLiteral("bindings"), bindings}};
}

QJsonArray toJson(const QVector<SceneProject>& projects)
{
    QJsonArray array;
    for (const SceneProject& project : projects)
        array.append(toJson(project));
    return array;
}

} // namespace NelvoDevkit
