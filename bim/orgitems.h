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
//! Each item contains one value in the role Qt::UserRole + 1: a QVariantMap with "id", "name" and
//! "canSelect". It has no display text.

//! Appends `node` and its descendants to `parent`.
void appendOrgNode(QStandardItem* parent, const NelvoSDK::OrgTreeNode& node);

//! The first item with the id `deptId`, depth first from `item`; null if there is none. The invisible root
//! has no map, so an empty `deptId` finds it.
QStandardItem* findOrgItem(const QString& deptId, QStandardItem* item);

//! Appends the ids of `item` and its descendants, depth first.
void collectOrgIds(QStringList& ids, QStandardItem* item);

} // namespace NelvoPlugin
