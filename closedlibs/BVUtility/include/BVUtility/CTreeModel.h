#pragma once

#include <QStandardItemModel>

#ifdef BVUTILITY_BUILD
#define BVUTILITY_EXPORT Q_DECL_EXPORT
#else
#define BVUTILITY_EXPORT Q_DECL_IMPORT
#endif

namespace BVUTILITY {

//! \brief A tree of items for a QML view, with signals that make the view expand or collapse an item.
//!
//! NodeDataRole contains the data of an item for the view. A TreeView whose column has the role "nodeData"
//! passes it to its delegate as `styleData.value`.
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
    //! The view should expand the item.
    void expand(const QModelIndex& index);
    //! The view should collapse the item.
    void collapse(const QModelIndex& index);

private:
    //! The items that have children, level by level.
    QVector<QModelIndex> branches() const;
};

} // namespace BVUTILITY
