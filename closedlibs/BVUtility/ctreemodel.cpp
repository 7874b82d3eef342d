#include <BVUtility/CTreeModel.h>

#include <algorithm>

namespace BVUTILITY {

CTreeModel::CTreeModel(QObject* parent) : QStandardItemModel(parent) {}

CTreeModel::~CTreeModel() = default;

QHash<int, QByteArray> CTreeModel::roleNames() const
{
    QHash<int, QByteArray> names = QStandardItemModel::roleNames();
    names.insert(NodeDataRole, QByteArrayLiteral("nodeData"));
    return names;
}

void CTreeModel::expandAll()
{
    const QVector<QModelIndex> indices = branches();
    for (const QModelIndex& index : indices)
        Q_EMIT expand(index);
}

void CTreeModel::collapseAll()
{
    QVector<QModelIndex> indices = branches();
    std::reverse(indices.begin(), indices.end());
    for (const QModelIndex& index : qAsConst(indices))
        Q_EMIT collapse(index);
}

QVector<QModelIndex> CTreeModel::branches() const
{
    QVector<QModelIndex> found{QModelIndex()};
    for (int next = 0; next < found.size(); ++next) {
        const QModelIndex parent = found.at(next);
        for (int row = 0; row < rowCount(parent); ++row) {
            const QModelIndex child = index(row, 0, parent);
            if (hasChildren(child))
                found.append(child);
        }
    }
    found.removeFirst(); // the invisible root
    return found;
}

} // namespace BVUTILITY
