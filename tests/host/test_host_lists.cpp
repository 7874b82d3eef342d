#include "host/devicelist.h"
#include "host/orgtreemodel.h"
#include "host/projectlist.h"
#include "host/projectrecord.h"

#include <QAbstractItemModelTester>
#include <QtTest>

using NelvoDevkit::DeviceList;
using NelvoDevkit::OrgTreeModel;
using NelvoDevkit::ProjectList;

class TestHostLists : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void smallTreeIsUnfolded();
    void rolesOfAUnit();
    void foldingHidesAllBelow();
    void foldedUnitsBelowStayFolded();
    void leafAndStrangeRowsDoNothing();
    void largeTreeShowsItsFirstLevel();
    void clearedTree();
    void projectsAsRows();
    void renameAndRemove();
    void recordOfAProject();
    void recordWithoutEmptyFields();
    void componentsOfEachProject();
    void bindingsAreWhatHasASerial();
};

namespace {

NelvoSDK::OrgTreeNode unit(const std::wstring& name, bool selectable,
                           std::list<NelvoSDK::OrgTreeNode> children = {})
{
    return {L"id of " + name, name, selectable, std::move(children)};
}

//! The tree a( b( c, d( e ) ), f ).
NelvoSDK::OrgTreeNode smallTree()
{
    return unit(
        L"a", false,
        {unit(L"b", false, {unit(L"c", true), unit(L"d", true, {unit(L"e", true)})}), unit(L"f", true)});
}

QString shown(const QAbstractItemModel& model)
{
    QStringList names;
    for (int row = 0; row < model.rowCount(); ++row)
        names.append(model.index(row, 0).data().toString());
    return names.join(QLatin1Char(' '));
}

NelvoSDK::ProjectNode fullProject()
{
    NelvoSDK::ProjectNode project;
    project.id = L"p-1";
    project.name = L"泵站";
    project.x = L"121.474";
    project.y = L"31.2304";
    project.code = L"JN-07";
    project.basemap = L"gaode";
    project.proj4 = L"+proj=longlat";
    project.attrs = {{L"deptId", L"11"}, {L"deptName", L"水文监测处"}};
    return project;
}

QStringList lines(const QVariantList& rows)
{
    QStringList found;
    for (const QVariant& row : rows)
        found.append(row.toMap().value(QStringLiteral("label")).toString() + QLatin1Char('=') +
                     row.toMap().value(QStringLiteral("value")).toString());
    return found;
}

} // namespace

void TestHostLists::smallTreeIsUnfolded()
{
    OrgTreeModel model;
    const QAbstractItemModelTester tester(&model);
    QSignalSpy counted(&model, &OrgTreeModel::unitCountChanged);
    model.setTree(smallTree());
    QCOMPARE(shown(model), QStringLiteral("a b c d e f"));
    QCOMPARE(model.unitCount(), 6);
    QCOMPARE(counted.size(), 1);
}

void TestHostLists::rolesOfAUnit()
{
    OrgTreeModel model;
    model.setTree(smallTree());
    const QModelIndex d = model.index(3);
    QCOMPARE(d.data(OrgTreeModel::IdRole).toString(), QStringLiteral("id of d"));
    QCOMPARE(d.data(OrgTreeModel::DepthRole).toInt(), 2);
    QCOMPARE(d.data(OrgTreeModel::SelectableRole).toBool(), true);
    QCOMPARE(d.data(OrgTreeModel::ChildCountRole).toInt(), 1);
    QCOMPARE(d.data(OrgTreeModel::ExpandedRole).toBool(), true);
    QCOMPARE(model.index(0).data(OrgTreeModel::SelectableRole).toBool(), false);
    QCOMPARE(model.index(2).data(OrgTreeModel::ExpandedRole).toBool(), false);
    QCOMPARE(model.roleNames().size(), 6);
}

void TestHostLists::foldingHidesAllBelow()
{
    OrgTreeModel model;
    const QAbstractItemModelTester tester(&model);
    model.setTree(smallTree());
    model.toggle(1);
    QCOMPARE(shown(model), QStringLiteral("a b f"));
    QCOMPARE(model.index(1).data(OrgTreeModel::ExpandedRole).toBool(), false);
    model.toggle(1);
    QCOMPARE(shown(model), QStringLiteral("a b c d e f"));
    model.toggle(0);
    QCOMPARE(shown(model), QStringLiteral("a"));
    QCOMPARE(model.unitCount(), 6);
}

void TestHostLists::foldedUnitsBelowStayFolded()
{
    OrgTreeModel model;
    const QAbstractItemModelTester tester(&model);
    model.setTree(smallTree());
    model.toggle(3);
    QCOMPARE(shown(model), QStringLiteral("a b c d f"));
    model.toggle(0);
    model.toggle(0);
    QCOMPARE(shown(model), QStringLiteral("a b c d f"));
}

void TestHostLists::leafAndStrangeRowsDoNothing()
{
    OrgTreeModel model;
    model.setTree(smallTree());
    for (const int row : {-1, 2, 6})
        model.toggle(row);
    QCOMPARE(shown(model), QStringLiteral("a b c d e f"));
}

void TestHostLists::largeTreeShowsItsFirstLevel()
{
    NelvoSDK::OrgTreeNode root = unit(L"root", false);
    for (int i = 0; i < 200; ++i) {
        root.children.push_back(unit(std::to_wstring(i), false));
        for (int j = 0; j < 200; ++j)
            root.children.back().children.push_back(unit(L"leaf", true));
    }
    OrgTreeModel model;
    model.setTree(root);
    QCOMPARE(model.unitCount(), 1 + 200 + 200 * 200);
    QCOMPARE(model.rowCount(), 201);
    model.toggle(200);
    QCOMPARE(model.rowCount(), 401);
    QCOMPARE(model.index(400).data(OrgTreeModel::DepthRole).toInt(), 2);
}

void TestHostLists::clearedTree()
{
    OrgTreeModel model;
    const QAbstractItemModelTester tester(&model);
    model.setTree(smallTree());
    model.clear();
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.unitCount(), 0);
    model.setTree(unit(L"alone", true));
    QCOMPARE(shown(model), QStringLiteral("alone"));
}

void TestHostLists::projectsAsRows()
{
    ProjectList list;
    const QAbstractItemModelTester tester(&list);
    QSignalSpy counted(&list, &ProjectList::countChanged);
    list.replace({fullProject()});
    NelvoSDK::ProjectNode other;
    other.id = L"p-2";
    other.name = L"other";
    list.append(other);
    QCOMPARE(shown(list), QStringLiteral("泵站 other"));
    QCOMPARE(counted.size(), 2);
    const QModelIndex first = list.index(0);
    QCOMPARE(first.data(ProjectList::IdRole).toString(), QStringLiteral("p-1"));
    QCOMPARE(first.data(ProjectList::CodeRole).toString(), QStringLiteral("JN-07"));
    QCOMPARE(first.data(ProjectList::DepartmentRole).toString(), QStringLiteral("水文监测处"));
    QCOMPARE(list.index(1).data(ProjectList::DepartmentRole).toString(), QString());
    QCOMPARE(list.nameOf(QStringLiteral("p-2")), QStringLiteral("other"));
    QCOMPARE(list.nameOf(QStringLiteral("p-3")), QString());
}

void TestHostLists::renameAndRemove()
{
    ProjectList list;
    const QAbstractItemModelTester tester(&list);
    list.replace({fullProject()});
    list.rename(QStringLiteral("p-1"), QStringLiteral("水闸"));
    list.rename(QStringLiteral("p-9"), QStringLiteral("nobody"));
    list.remove(QStringLiteral("p-9"));
    QCOMPARE(shown(list), QStringLiteral("水闸"));
    list.remove(QStringLiteral("p-1"));
    QCOMPARE(list.rowCount(), 0);
    QVERIFY(!list.find(QStringLiteral("p-1")));
}

void TestHostLists::recordOfAProject()
{
    QCOMPARE(lines(NelvoDevkit::describeProject(fullProject(), QStringLiteral("水利局"))),
             (QStringList{"名称=泵站", "编号=p-1", "企业=水利局", "部门=水文监测处", "代码=JN-07",
                          "底图=gaode", "位置=121.474, 31.2304", "坐标系=+proj=longlat"}));
}

void TestHostLists::recordWithoutEmptyFields()
{
    NelvoSDK::ProjectNode project;
    project.id = L"p-1";
    QCOMPARE(lines(NelvoDevkit::describeProject(project, {})), QStringList("编号=p-1"));
}

void TestHostLists::componentsOfEachProject()
{
    const auto guids = [](const DeviceList& list) {
        QSet<QString> found;
        for (int row = 0; row < list.rowCount(); ++row)
            found.insert(list.index(row).data(DeviceList::GuidRole).toString());
        return found;
    };
    DeviceList list;
    const QAbstractItemModelTester tester(&list);
    QCOMPARE(list.rowCount(), 0);
    list.setProject(QStringLiteral("p-1"));
    QVERIFY(list.rowCount() > 2);
    const QSet<QString> first = guids(list);
    QCOMPARE(first.size(), list.rowCount());
    list.setProject(QStringLiteral("p-2"));
    QVERIFY(!guids(list).intersects(first));
    list.setProject(QStringLiteral("p-1"));
    QCOMPARE(guids(list), first);
    list.setProject({});
    QCOMPARE(list.rowCount(), 0);
}

void TestHostLists::bindingsAreWhatHasASerial()
{
    DeviceList list;
    const QAbstractItemModelTester tester(&list);
    list.setProject(QStringLiteral("p-1"));
    QVERIFY(list.bindings().isEmpty());
    QSignalSpy counted(&list, &DeviceList::boundCountChanged);
    QVERIFY(list.setData(list.index(0), QStringLiteral(" SN-1 "), DeviceList::SerialRole));
    QVERIFY(list.setData(list.index(1), QStringLiteral("  "), DeviceList::SerialRole));
    QVERIFY(!list.setData(list.index(2), QStringLiteral("name"), DeviceList::ComponentRole));
    QCOMPARE(counted.size(), 2);
    const QString guid = list.index(0).data(DeviceList::GuidRole).toString();
    QCOMPARE(list.bindings(), (QMap<QString, QString>{{guid, "SN-1"}}));
    QCOMPARE(list.boundCount(), 1);

    // The list keeps the serial numbers of each project.
    list.setProject(QStringLiteral("p-2"));
    QVERIFY(list.bindings().isEmpty());
    list.setProject(QStringLiteral("p-1"));
    QCOMPARE(list.boundCount(), 1);
}

QTEST_GUILESS_MAIN(TestHostLists)
#include "test_host_lists.moc"
