#include "bim/orgitems.h"

#include <NelvoSDK/ProjectRecords.h>

#include <QStandardItem>
#include <QVariantMap>

namespace NelvoPlugin {

namespace {

constexpr int NodeRole = Qt::UserRole + 1;

QString idOf(const QStandardItem* item)
{
    return item->data(NodeRole).toMap().value(QStringLiteral("id")).toString();
}

} // namespace

void appendOrgNode(QStandardItem* parent, const NelvoSDK::OrgTreeNode& node)
{
    auto* const item = new QStandardItem;
    item->setData(QVariantMap{{QStringLiteral("id"), QString::fromStdWString(node.id)},
                              {QStringLiteral("name"), QString::fromStdWString(node.name)},
                              {QStringLiteral("canSelect"), node.canSelect}},
                  NodeRole);
    for (const NelvoSDK::OrgTreeNode& child : node.children)
        appendOrgNode(item, child);
    parent->appendRow(item);
}

QStandardItem* findOrgItem(const QString& deptId, QStandardItem* item)
{
    if (!item || idOf(item) == deptId)
        return item;
    for (int row = 0; row < item->rowCount(); ++row) {
        if (QStandardItem* found = findOrgItem(deptId, item->child(row)))
            return found;
    }
    return nullptr;
}

void collectOrgIds(QStringList& ids, QStandardItem* item)
{
    if (!item)
        return;
    ids.append(idOf(item));
    for (int row = 0; row < item->rowCount(); ++row)
        collectOrgIds(ids, item->child(row));
}

} // namespace NelvoPlugin
