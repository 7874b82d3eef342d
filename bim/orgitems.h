#pragma once

#include <QString>
#include <QStringList>

class QStandardItem;

namespace NelvoSDK {
struct OrgTreeNode;
}

namespace NelvoPlugin {

//! \file
//! \brief The organisation tree as items of a model. GUI thread.
//!
//! An item holds one value, a QVariantMap with "id", "name" and "canSelect", in the role Qt::UserRole + 1;
//! it has no display text.

//! Appends `node` and all below it to `parent`.
void appendOrgNode(QStandardItem* parent, const NelvoSDK::OrgTreeNode& node);

//! The first item, depth first from `item` on, whose id is `deptId`; null if there is none. The invisible
//! root has no map, so an empty `deptId` finds it.
QStandardItem* findOrgItem(const QString& deptId, QStandardItem* item);

//! Appends the ids of `item` and of all below it, depth first.
void collectOrgIds(QStringList& ids, QStandardItem* item);

} // namespace NelvoPlugin
