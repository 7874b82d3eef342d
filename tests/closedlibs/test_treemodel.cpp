#include <BVUtility/CTreeModel.h>

#include <QtTest>

using BVUTILITY::CTreeModel;

namespace {

QStandardItem* appendTo(QStandardItem* parent, const QString& text)
{
    auto* item = new QStandardItem(text);
    parent->appendRow(item);
    return item;
}

//! The texts of the items in the emitted signals.
QStringList texts(const QSignalSpy& spy)
{
    QStringList list;
    for (const QVariantList& arguments : spy)
        list.append(arguments.first().toModelIndex().data().toString());
    return list;
}

} // namespace

class TestTreeModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void roleNamesKeepTheUsualOnes();
    void expandAllTellsParentsFirst();
    void collapseAllTellsParentsLast();
    void emptyModelTellsNothing();
    void operationsAreReachableByName();

private:
    //! Adds the tree a (a1 (a11), a2), b, c (c1).
    static void fill(const CTreeModel& model);
};

void TestTreeModel::fill(const CTreeModel& model)
{
    QStandardItem* root = model.invisibleRootItem();
    QStandardItem* a = appendTo(root, "a");
    appendTo(appendTo(a, "a1"), "a11");
    appendTo(a, "a2");
    appendTo(root, "b");
    appendTo(appendTo(root, "c"), "c1");
}

void TestTreeModel::roleNamesKeepTheUsualOnes()
{
    const CTreeModel model;
    QHash<int, QByteArray> names = QStandardItemModel().roleNames();
    QVERIFY(!names.contains(Qt::UserRole + 1));
    names.insert(Qt::UserRole + 1, "nodeData");
    QCOMPARE(model.roleNames(), names);
}

void TestTreeModel::expandAllTellsParentsFirst()
{
    CTreeModel model;
    fill(model);
    const QSignalSpy expanded(&model, &CTreeModel::expand);
    const QSignalSpy collapsed(&model, &CTreeModel::collapse);
    model.expandAll();
    QCOMPARE(texts(expanded), (QStringList{"a", "c", "a1"}));
    QVERIFY(collapsed.isEmpty());
}

void TestTreeModel::collapseAllTellsParentsLast()
{
    CTreeModel model;
    fill(model);
    const QSignalSpy expanded(&model, &CTreeModel::expand);
    const QSignalSpy collapsed(&model, &CTreeModel::collapse);
    model.collapseAll();
    QCOMPARE(texts(collapsed), (QStringList{"a1", "c", "a"}));
    QVERIFY(expanded.isEmpty());
}

void TestTreeModel::emptyModelTellsNothing()
{
    CTreeModel model;
    const QSignalSpy expanded(&model, &CTreeModel::expand);
    const QSignalSpy collapsed(&model, &CTreeModel::collapse);
    model.expandAll();
    model.collapseAll();
    QVERIFY(expanded.isEmpty());
    QVERIFY(collapsed.isEmpty());
}

void TestTreeModel::operationsAreReachableByName()
{
    CTreeModel model;
    fill(model);
    const QSignalSpy expanded(&model, SIGNAL(expand(QModelIndex)));
    const QSignalSpy collapsed(&model, SIGNAL(collapse(QModelIndex)));
    QVERIFY(QMetaObject::invokeMethod(&model, "expandAll"));
    QVERIFY(QMetaObject::invokeMethod(&model, "collapseAll"));
    QCOMPARE(expanded.count(), 3);
    QCOMPARE(collapsed.count(), 3);
}

QTEST_GUILESS_MAIN(TestTreeModel)
#include "test_treemodel.moc"
