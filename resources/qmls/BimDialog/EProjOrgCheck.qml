import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"
import "../FuncComp"
import "../Theme" as Nelvo

// Chooses a department from the organisation tree.
T.ComboBox {
    id: control

    property color fontColor: Nelvo.Theme.sceneText
    property color backGroundColor: EConfig.eBtnSelected
    property real fontSize: Nelvo.Theme.textSize
    property string deptID: ""
    property string deptName: qsTr("所有工程")

    // The tree is created when it is first shown. Before that, no binding may read `popup`, and `popup` has
    // no id.
    property bool treeShown: false

    signal sigSelectDeptId

    function clearSelect() {
        deptID = "";
        deptName = qsTr("所有工程");
    }

    // Departments whose `canSelect` is false can be selected, too; only their image differs.
    function selectDept(dept) {
        deptID = dept.id;
        deptName = dept.name;
        sigSelectDeptId();
        popup.close();
    }

    // The rows that exist in the tree, from top to bottom. The host's tree may create them in any order.
    function rowsIn(item) {
        if (item.objectName === "deptRow")
            return [item];
        return Array.from(item.children).reduce((rows, child) => rows.concat(rowsIn(child)), [])
            .sort((one, other) => one.mapToItem(control, 0, 0).y - other.mapToItem(control, 0, 0).y);
    }

    function focusRow(row) {
        if (row)
            row.keyArea.forceActiveFocus(Qt.TabFocusReason);
    }

    function enterTree() {
        const rows = rowsIn(popup.contentItem);
        focusRow(rows.find(row => row.dept.id === deptID) || rows[0]);
    }

    // The wheel may have scrolled the row away. The tree then has not its neighbours, but rows further away.
    function focusNeighbour(area, step) {
        area.revealRow();
        const rows = rowsIn(popup.contentItem);
        focusRow(rows[rows.indexOf(area.row) + step]);
    }

    // The closing returns the focus to this box without a reason, on which its outline depends.
    function leaveTree(target, reason) {
        popup.close();
        focusReason = reason;
        target.forceActiveFocus(reason);
    }

    function handleLeavingKey(event) {
        if (event.key === Qt.Key_Escape)
            leaveTree(control, Qt.TabFocusReason);
        else if (event.key === Qt.Key_Tab)
            leaveTree(nextItemInFocusChain(true), Qt.TabFocusReason);
        else if (event.key === Qt.Key_Backtab)
            leaveTree(nextItemInFocusChain(false), Qt.BacktabFocusReason);
        else
            return;
        event.accepted = true;
    }

    implicitWidth: 200
    implicitHeight: 26
    font.family: Nelvo.Theme.fontFamily
    model: orgModel

    Accessible.name: deptName

    indicator: Image {
        anchors {
            right: parent.right
            rightMargin: 10
            verticalCenter: parent.verticalCenter
        }
        // An open tree shows the image of the download button. This is intentional.
        source: control.treeShown ? "qrc:/NelvoPlugin/qmls/images/pop_ic_bim_hover.png"
                                  : "qrc:/NelvoPlugin/qmls/images/ic_xiala.png"
    }

    contentItem: EText {
        leftPadding: 15
        rightPadding: control.indicator.width + 20
        text: control.deptName
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        font.family: control.font.family
        font.pixelSize: control.fontSize
        color: control.fontColor
    }

    background: Rectangle {
        color: control.backGroundColor
    }

    FocusFrame {}

    popup: T.Popup {
        y: control.height - 1
        width: control.width
        height: 280
        padding: 1
        focus: true

        onVisibleChanged: {
            control.treeShown = visible;
            // Otherwise a row that had the focus before would have it again.
            if (visible)
                contentItem.item.start.forceActiveFocus();
            if (visible && orgModel)
                orgModel.expandAll();
        }

        background: Rectangle {
            color: Nelvo.Theme.tree
        }

        contentItem: Loader {
            sourceComponent: deptTree
        }
    }

    Component {
        id: deptTree

        Item {
            readonly property Item start: startArea

            // Has the focus until an arrow key moves it to a row.
            Item {
                id: startArea

                Keys.onUpPressed: control.enterTree()
                Keys.onDownPressed: control.enterTree()
                Keys.onPressed: control.handleLeavingKey(event)
                Keys.onShortcutOverride: event.accepted = event.key === Qt.Key_Escape
            }

            Rectangle {
                id: line
                objectName: "line"

                x: 15
                width: parent.width - 30
                height: 1
                color: Nelvo.Theme.treeLine
            }

            ETree {
                id: orgTree
                objectName: "orgTree"

                anchors {
                    top: line.bottom
                    topMargin: 5
                    left: parent.left
                    right: parent.right
                    bottom: parent.bottom
                }
                clip: true
                model: orgModel
                treeStyleHeight: 32
                treeBackColor: Nelvo.Theme.tree
                itemDelegate: deptRow

                Component.onCompleted: {
                    if (orgModel)
                        orgModel.expandAll();
                }
            }

            Connections {
                target: orgModel
                ignoreUnknownSignals: true

                function onExpand(index) {
                    orgTree.expand(index);
                }
                function onCollapse(index) {
                    orgTree.collapse(index);
                }
            }
        }
    }

    Component {
        id: deptRow

        Item {
            implicitHeight: 32

            Rectangle {
                objectName: "deptRow"

                readonly property var dept: styleData.value
                readonly property alias keyArea: deptArea

                width: control.width
                height: 32
                color: rowArea.containsMouse || control.deptID === dept.id ? Nelvo.Theme.treeHighlight
                                                                           : Nelvo.Theme.tree

                Image {
                    id: deptImage
                    objectName: "deptImage"

                    x: (styleData.depth + 1) * 15
                    anchors.verticalCenter: parent.verticalCenter
                    source: parent.dept.canSelect ? "qrc:/NelvoPlugin/qmls/images/ic_project.png"
                                                  : "qrc:/NelvoPlugin/qmls/images/ic_company.png"
                }

                EText {
                    objectName: "deptNameText"

                    anchors {
                        left: deptImage.right
                        leftMargin: 10
                        right: chosenImage.left
                        rightMargin: 10
                        verticalCenter: parent.verticalCenter
                    }
                    // A row has no data while it is being collapsed.
                    text: parent.dept.name || ""
                    elide: Text.ElideRight
                    font.family: control.font.family
                    font.pixelSize: styleData.depth === 0 ? Nelvo.Theme.textSize : Nelvo.Theme.smallTextSize
                    color: Nelvo.Theme.softText
                }

                Image {
                    id: chosenImage
                    objectName: "chosenImage"

                    anchors {
                        right: parent.right
                        rightMargin: 25
                        verticalCenter: parent.verticalCenter
                    }
                    // Compares names: all departments with this name show the mark.
                    visible: control.deptName === parent.dept.name
                    source: "qrc:/NelvoPlugin/qmls/images/ic_xuanzhong.png"
                }

                MouseArea {
                    id: rowArea

                    anchors.fill: parent
                    hoverEnabled: true

                    onClicked: control.selectDept(parent.dept)
                }

                // The arrow keys go from row to row; the Tab key leaves the tree.
                KeyArea {
                    id: deptArea

                    // Without the place of the tree's scroll bar.
                    anchors.rightMargin: 10
                    row: parent
                    Accessible.role: Accessible.TreeItem
                    Accessible.name: parent.dept.name || ""
                    Accessible.selectable: true
                    Accessible.selected: control.deptID === parent.dept.id

                    // The host's tree has actions of its own for these keys.
                    Keys.onUpPressed: control.focusNeighbour(deptArea, -1)
                    Keys.onDownPressed: control.focusNeighbour(deptArea, 1)
                    Keys.onLeftPressed: event.accepted = true
                    Keys.onRightPressed: event.accepted = true
                    Keys.onPressed: control.handleLeavingKey(event)
                    Keys.onShortcutOverride: event.accepted = event.key === Qt.Key_Escape

                    onActivated: {
                        control.selectDept(parent.dept);
                        control.leaveTree(control, Qt.TabFocusReason);
                    }
                }
            }
        }
    }
}
