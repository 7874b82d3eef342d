#pragma once

#include <QStandardItemModel>

#ifdef BVUTILITY_BUILD
#define BVUTILITY_EXPORT Q_DECL_EXPORT
#else
#define BVUTILITY_EXPORT Q_DECL_IMPORT
#endif

namespace BVUTILITY {

//! \brief A tree of items that a view in QML shows, and that can ask the view to open or close itself.
//!
//! An item's data for the view is whatever stands in NodeDataRole. A TreeView whose column has the role
//! "nodeData" hands it to its delegate as `styleData.value`.
class BVUTILITY_EXPORT CTreeModel : public QStandardItemModel
{
    Q_OBJECT

public:
    static constexpr int NodeDataRole = Qt::UserRole + 1;

    explicit CTreeModel(QObject* parent = nullptr);
    ~CTreeModel() override;

    //! The usual roles, and NodeDataRole as "nodeData".
    QHash<int, QByteArray> roleNames() const override;

    //! Emits expand for each item that has children, parents first.
    Q_INVOKABLE void expandAll();
    //! Emits collapse for each item that has children, parents last.
    Q_INVOKABLE void collapseAll();

Q_SIGNALS:
    //! Asks the view to open the item.
    void expand(const QModelIndex& index);
    //! Asks the view to close the item.
    void collapse(const QModelIndex& index);

private:
    //! The items that have children, level by level.
    QVector<QModelIndex> branches() const;
};

} // namespace BVUTILITY
