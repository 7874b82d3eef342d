#include "host/orgtreemodel.h"

#include <iterator>

namespace NelvoDevkit {

namespace {

//! A tree with at most this number of units is expanded at first.
constexpr int SmallTree = 100;

} // namespace

void OrgTreeModel::setTree(const NelvoSDK::OrgTreeNode& root)
{
    beginResetModel();
    m_units.clear();
    m_rows.clear();
    append(root, 0);
    const bool small = unitCount() <= SmallTree;
    for (Unit& unit : m_units)
        unit.expanded = unit.childCount > 0 && (small || unit.depth == 0);
    const std::vector<int> below = shownBelow(0);
    m_rows.push_back(0);
    m_rows.insert(m_rows.end(), below.begin(), below.end());
    endResetModel();
    Q_EMIT unitCountChanged();
}

void OrgTreeModel::clear()
{
    beginResetModel();
    m_units.clear();
    m_rows.clear();
    endResetModel();
    Q_EMIT unitCountChanged();
}

void OrgTreeModel::toggle(int row)
{
    if (row < 0 || row >= rowCount())
        return;
    const int index = m_rows[std::size_t(row)];
    Unit& unit = m_units[std::size_t(index)];
    if (unit.childCount == 0)
        return;

    const std::vector<int> below = shownBelow(index);
    const int count = int(below.size());
    const auto place = m_rows.begin() + row + 1;
    if (unit.expanded) {
        beginRemoveRows({}, row + 1, row + count);
        m_rows.erase(place, place + count);
        endRemoveRows();
    } else {
        beginInsertRows({}, row + 1, row + count);
        m_rows.insert(place, below.begin(), below.end());
        endInsertRows();
    }
    unit.expanded = !unit.expanded;
    Q_EMIT dataChanged(this->index(row), this->index(row), {ExpandedRole});
}

int OrgTreeModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant OrgTreeModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Unit& unit = m_units[std::size_t(m_rows[std::size_t(index.row())])];
    switch (role) {
    case NameRole:
        return unit.name;
    case IdRole:
        return unit.id;
    case DepthRole:
        return unit.depth;
    case SelectableRole:
        return unit.selectable;
    case ChildCountRole:
        return unit.childCount;
    case ExpandedRole:
        return unit.expanded;
    default:
        return {};
    }
}

QHash<int, QByteArray> OrgTreeModel::roleNames() const
{
    return {{NameRole, "name"},
            {IdRole, "unitId"},
            {DepthRole, "depth"},
            {SelectableRole, "selectable"},
            {ChildCountRole, "childCount"},
            {ExpandedRole, "expanded"}};
}

void OrgTreeModel::append(const NelvoSDK::OrgTreeNode& node, int depth)
{
    const std::size_t place = m_units.size();
    Unit unit;
    unit.id = QString::fromStdWString(node.id);
    unit.name = QString::fromStdWString(node.name);
    unit.selectable = node.canSelect;
    unit.depth = depth;
    unit.childCount = int(node.children.size());
    m_units.push_back(unit);
    for (const NelvoSDK::OrgTreeNode& child : node.children)
        append(child, depth + 1);
    m_units[place].end = unitCount();
}

std::vector<int> OrgTreeModel::shownBelow(int unit) const
{
    std::vector<int> shown;
    const int end = m_units[std::size_t(unit)].end;
    for (int below = unit + 1; below < end;) {
        const Unit& candidate = m_units[std::size_t(below)];
        shown.push_back(below);
        below = candidate.expanded ? below + 1 : candidate.end;
    }
    return shown;
}

} // namespace NelvoDevkit
