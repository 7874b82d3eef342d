#include <BVUtility/CTreeModel.h>

#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QtTest>

#include <memory>

using BVUTILITY::CTreeModel;

namespace {

//! A tree view like the editor's own component: one column with the model's role `nodeData`.
constexpr char TreePage[] = R"(
import QtQuick 2.15
import QtQuick.Controls 1.4

TreeView {
    id: tree
    property var shown: ({})
    function note(name, what) { shown[name] = what; shownChanged() }
    width: 300
    height: 400
    model: orgModel
    headerVisible: false
    TableViewColumn { role: "nodeData" }
    itemDelegate: Text {
        text: styleData.value ? styleData.value.name : ""
        onTextChanged: tree.note(text, [styleData.value.id, styleData.value.canSelect, styleData.depth])
    }
    Connections {
        target: orgModel
        function onExpand(index) { tree.expand(index) }
        function onCollapse(index) { tree.collapse(index) }
    }
}
)";

QStandardItem* node(const QString& id, const QString& name, bool canSelect)
{
    auto* item = new QStandardItem;
    item->setData(QVariantMap{{"id", id}, {"name", name}, {"canSelect", canSelect}},
                  CTreeModel::NodeDataRole);
    return item;
}

} // namespace

//! \brief The tree model in a tree view like the editor's.
class TestTreeView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void delegateGetsTheNodeData();
    void expandAllOpensTheWholeTree();
    void collapseAllClosesTheWholeTree();

private:
    //! For each node name, the values that its delegate received: id, canSelect, depth.
    QVariantMap shown() const { return m_tree->property("shown").toMap(); }
    bool isExpanded(const QModelIndex& index) const;
    QModelIndex enterprise() const { return m_model->index(0, 0); }
    QModelIndex branch() const { return m_model->index(0, 0, enterprise()); }

    std::unique_ptr<CTreeModel> m_model;
    std::unique_ptr<QQuickView> m_view;
    QQuickItem* m_tree = nullptr;
};

void TestTreeView::init()
{
    m_model = std::make_unique<CTreeModel>();
    QStandardItem* enterprise = node("1001", "远景建筑设计研究院", false);
    QStandardItem* branch = node("1001-10", "设计总院", false);
    branch->appendRow(node("1001-11", "建筑设计一所", true));
    enterprise->appendRow(branch);
    m_model->invisibleRootItem()->appendRow(enterprise);

    m_view = std::make_unique<QQuickView>();
    m_view->rootContext()->setContextProperty("orgModel", m_model.get());
    QQmlComponent component(m_view->engine());
    component.setData(TreePage, QUrl());
    m_tree = qobject_cast<QQuickItem*>(component.create(m_view->rootContext()));
    QVERIFY2(m_tree != nullptr, qPrintable(component.errorString()));
    m_tree->setParent(m_view.get());
    m_tree->setParentItem(m_view->contentItem());
    m_view->resize(300, 400);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
}

void TestTreeView::cleanup()
{
    m_tree = nullptr;
    m_view.reset();
    m_model.reset();
}

bool TestTreeView::isExpanded(const QModelIndex& index) const
{
    QVariant answer;
    const bool isCalled = QMetaObject::invokeMethod(m_tree, "isExpanded", Q_RETURN_ARG(QVariant, answer),
                                                    Q_ARG(QVariant, index));
    return isCalled && answer.toBool();
}

void TestTreeView::delegateGetsTheNodeData()
{
    QTRY_COMPARE(shown().value("远景建筑设计研究院").toList(), (QVariantList{"1001", false, 0}));
    QCOMPARE(shown().size(), 1);
}

void TestTreeView::expandAllOpensTheWholeTree()
{
    m_model->expandAll();
    QVERIFY(isExpanded(enterprise()));
    QVERIFY(isExpanded(branch()));
    QTRY_COMPARE(shown().value("建筑设计一所").toList(), (QVariantList{"1001-11", true, 2}));
    QCOMPARE(shown().value("设计总院").toList(), (QVariantList{"1001-10", false, 1}));
}

void TestTreeView::collapseAllClosesTheWholeTree()
{
    m_model->expandAll();
    m_model->collapseAll();
    QVERIFY(!isExpanded(enterprise()));
    QVERIFY(!isExpanded(branch()));
}

QTEST_MAIN(TestTreeView)
#include "test_treeview.moc"
