#pragma once

#include <NelvoSDK/ProjectRecords.h>

#include <QAbstractListModel>

#include <vector>

namespace NelvoDevkit {

//! \brief The organisation tree as rows of a list: the units whose ancestors are all expanded.
class OrgTreeModel : public QAbstractListModel
{
    Q_OBJECT
    //! Number of units in the whole tree, including hidden ones.
    Q_PROPERTY(int unitCount READ unitCount NOTIFY unitCountChanged)

public:
    enum Role {
        NameRole = Qt::DisplayRole,
        IdRole = Qt::UserRole,
        DepthRole,
        SelectableRole, //!< whether a project may belong to the unit
        ChildCountRole,
        ExpandedRole,
    };

    int unitCount() const { return int(m_units.size()); }

    //! Shows that tree: all of a small tree, the first level of a large tree.
    void setTree(const NelvoSDK::OrgTreeNode& root);
    void clear();

    //! Expands or collapses the unit in that row. No effect on a unit without sub-units.
    Q_INVOKABLE void toggle(int row);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void unitCountChanged();

private:
    struct Unit {
        QString id;
        QString name;
        bool selectable = false;
        bool expanded = false;
        int depth = 0;
        int childCount = 0;
        int end = 0; //!< the first unit after this one and its descendants
    };

    void append(const NelvoSDK::OrgTreeNode& node, int depth);
    //! The descendants of the unit that are visible if the unit is expanded.
    std::vector<int> shownBelow(int unit) const;

    std::vector<Unit> m_units; //!< each unit is followed by its descendants
    std::vector<int> m_rows;   //!< the visible units
};

} // namespace NelvoDevkit
