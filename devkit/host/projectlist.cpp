#include "host/projectlist.h"

#include "host/projectrecord.h"

#include <NelvoSDK/RecordKeys.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace NelvoDevkit {

const NelvoSDK::ProjectNode* ProjectList::find(const QString& id) const
{
    const int row = rowOf(id);
    return row < 0 ? nullptr : &m_projects[std::size_t(row)];
}

QString ProjectList::nameOf(const QString& id) const
{
    const NelvoSDK::ProjectNode* const project = find(id);
    return project ? QString::fromStdWString(project->name) : QString();
}

void ProjectList::replace(std::vector<NelvoSDK::ProjectNode> projects)
{
    beginResetModel();
    m_projects = std::move(projects);
    endResetModel();
    Q_EMIT countChanged();
}

void ProjectList::append(const NelvoSDK::ProjectNode& project)
{
    beginInsertRows({}, rowCount(), rowCount());
    m_projects.push_back(project);
    endInsertRows();
    Q_EMIT countChanged();
}

void ProjectList::rename(const QString& id, const QString& name)
{
    const int row = rowOf(id);
    if (row < 0)
        return;
    m_projects[std::size_t(row)].name = name.toStdWString();
    Q_EMIT dataChanged(index(row), index(row), {NameRole});
}

void ProjectList::remove(const QString& id)
{
    const int row = rowOf(id);
    if (row < 0)
        return;
    beginRemoveRows({}, row, row);
    m_projects.erase(m_projects.begin() + row);
    endRemoveRows();
    Q_EMIT countChanged();
}

int ProjectList::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_projects.size());
}

QVariant ProjectList::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const NelvoSDK::ProjectNode& project = m_projects[std::size_t(index.row())];
    switch (role) {
    case NameRole:
        return QString::fromStdWString(project.name);
    case IdRole:
        return QString::fromStdWString(project.id);
    case CodeRole:
        return QString::fromStdWString(project.code);
    case DepartmentRole:
        return attribute(project, NelvoSDK::RecordKeys::DeptName);
    default:
        return {};
    }
}

QHash<int, QByteArray> ProjectList::roleNames() const
{
    return {{NameRole, "name"}, {IdRole, "projectId"}, {CodeRole, "code"}, {DepartmentRole, "department"}};
}

int ProjectList::rowOf(const QString& id) const
{
    const auto found = std::find_if(
        m_projects.begin(), m_projects.end(),
        [wideId = id.toStdWString()](const NelvoSDK::ProjectNode& project) { return project.id == wideId; });
    return found == m_projects.end() ? -1 : int(std::distance(m_projects.begin(), found));
}

} // namespace NelvoDevkit
