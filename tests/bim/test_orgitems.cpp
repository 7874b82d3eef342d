#include "bim/orgitems.h"

#include "tests/bim/orgnode.h"

#include <QStandardItemModel>
#include <QtTest>

using NelvoPlugin::appendOrgNode;
using NelvoPlugin::collectOrgIds;
using NelvoPlugin::findOrgItem;
using NelvoSDK::OrgTreeNode;

namespace {

//! The unit r with the children a (with a1 and a2) and b (with b1).
OrgTreeNode sample()
{
    return node(L"r", {node(L"a", {node(L"a1"), node(L"a2")}), node(L"b", {node(L"b1")}, false)}, false);
}

QVariantMap mapOf(const QStandardItem* item)
{
    return item->data(Qt::UserRole + 1).toMap();
}

QStringList idsBelow(const QString& deptId, const QStandardItemModel& model)
{
    QStringList ids;
    collectOrgIds(ids, findOrgItem(deptId, model.invisibleRootItem()));
    return ids;
}

} // namespace

class TestOrgItems : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itemHoldsItsMapAndNothingElse();
    void rootIsTheSingleTopRow();
    void appendingAgainKeepsWhatIsThere();
    void childrenKeepTheirOrder();
    void firstItemInDepthWins();
    void idsCompareExactly();
    void emptyIdFindsTheInvisibleRoot();
    void nothingIsFoundBelowNothing();
    void unitThatCannotBeChosenIsFound();
    void idsOfAWholeSubtree();
    void idsOfNothing();
};

void TestOrgItems::itemHoldsItsMapAndNothingElse()
{
    QStandardItemModel model;
    appendOrgNode(model.invisibleRootItem(), node(L"d1", {}, true));
    const QModelIndex index = model.index(0, 0);
    QCOMPARE(model.itemData(index).keys(), QList<int>{Qt::UserRole + 1});
    QCOMPARE(mapOf(model.item(0)), (QVariantMap{{QStringLiteral("id"), QStringLiteral("d1")},
                                                {QStringLiteral("name"), QStringLiteral("名d1")},
                                                {QStringLiteral("canSelect"), true}}));
    QCOMPARE(mapOf(model.item(0)).value(QStringLiteral("canSelect")).type(), QVariant::Bool);
}

void TestOrgItems::rootIsTheSingleTopRow()
{
    QStandardItemModel model;
    appendOrgNode(model.invisibleRootItem(), sample());
    QCOMPARE(model.rowCount(), 1);
    QCOMPARE(mapOf(model.item(0)).value(QStringLiteral("id")).toString(), QStringLiteral("r"));
}

void TestOrgItems::appendingAgainKeepsWhatIsThere()
{
    QStandardItemModel model;
    appendOrgNode(model.invisibleRootItem(), sample());
    appendOrgNode(model.invisibleRootItem(), sample());
    QCOMPARE(model.rowCount(), 2);
    QCOMPARE(model.item(1)->rowCount(), 2);
}

void TestOrgItems::childrenKeepTheirOrder()
{
    QStandardItemModel model;
    appendOrgNode(model.invisibleRootItem(), sample());
    QCOMPARE(idsBelow(QStringLiteral("r"), model), QStringLiteral("r a a1 a2 b b1").split(QLatin1Char(' ')));
}

void TestOrgItems::firstItemInDepthWins()
{
    QStandardItemModel model;
    appendOrgNode(model.invisibleRootItem(), node(L"r", {node(L"a", {node(L"twin")}), node(L"twin")}));
    const QStandardItem* found = findOrgItem(QStringLiteral("twin"), model.invisibleRootItem());
    QVERIFY(found);
    QCOMPARE(mapOf(found->parent()).value(QStringLiteral("id")).toString(), QStringLiteral("a"));
}

void TestOrgItems::idsCompareExactly()
{
    QStandardItemModel model;
    appendOrgNode(model.invisibleRootItem(), node(L"Dept"));
    QVERIFY(findOrgItem(QStringLiteral("Dept"), model.invisibleRootItem()));
    QVERIFY(!findOrgItem(QStringLiteral("dept"), model.invisibleRootItem()));
    QVERIFY(!findOrgItem(QStringLiteral("Dep"), model.invisibleRootItem()));
}

void TestOrgItems::emptyIdFindsTheInvisibleRoot()
{
    QStandardItemModel model;
    QCOMPARE(findOrgItem({}, model.invisibleRootItem()), model.invisibleRootItem());
    appendOrgNode(model.invisibleRootItem(), node({}));
    QCOMPARE(findOrgItem({}, model.invisibleRootItem()), model.invisibleRootItem());
}

void TestOrgItems::nothingIsFoundBelowNothing()
{
    QVERIFY(!findOrgItem(QStringLiteral("r"), nullptr));
    QVERIFY(!findOrgItem({}, nullptr));
}

void TestOrgItems::unitThatCannotBeChosenIsFound()
{
    QStandardItemModel model;
    appendOrgNode(model.invisibleRootItem(), sample());
    const QStandardItem* found = findOrgItem(QStringLiteral("b"), model.invisibleRootItem());
    QVERIFY(found);
    QCOMPARE(mapOf(found).value(QStringLiteral("canSelect")), QVariant(false));
}

void TestOrgItems::idsOfAWholeSubtree()
{
    QStandardItemModel model;
    appendOrgNode(model.invisibleRootItem(), sample());
    QCOMPARE(idsBelow(QStringLiteral("a"), model), QStringLiteral("a a1 a2").split(QLatin1Char(' ')));
    QCOMPARE(idsBelow({}, model).first(), QString());
    QCOMPARE(idsBelow({}, model).size(), 7);
}

void TestOrgItems::idsOfNothing()
{
    QStringList ids{QStringLiteral("kept")};
    collectOrgIds(ids, nullptr);
    QCOMPARE(ids, QStringList{QStringLiteral("kept")});
}

QTEST_GUILESS_MAIN(TestOrgItems)
#include "test_orgitems.moc"
