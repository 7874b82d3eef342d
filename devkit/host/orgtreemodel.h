#pragma once

#include <NelvoSDK/ProjectRecords.h>

#include <QAbstractListModel>

#include <vector>

namespace NelvoDevkit {

//! \brief The organisation tree as the rows of a list: those units whose parents are all unfolded.
class OrgTreeModel : public QAbstractListModel
{
    Q_OBJECT
    //! Units of the whole tree, folded ones included.
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

    //! Shows that tree: a small one unfolded, of a large one the first level.
    void setTree(const NelvoSDK::OrgTreeNode& root);
    void clear();

    //! Folds or unfolds the unit in that row; one without sub-units stays as it is.
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
        int end = 0; //!< the first unit behind this one and all below it
    };

    void append(const NelvoSDK::OrgTreeNode& node, int depth);
    //! The units below that one which show while it is unfolded.
    std::vector<int> shownBelow(int unit) const;

    std::vector<Unit> m_units; //!< each followed by those below it
    std::vector<int> m_rows;   //!< the units that show
};

} // namespace NelvoDevkit
