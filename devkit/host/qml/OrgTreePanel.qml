import QtQuick 2.15
import QtQuick.Controls 2.15
import "."

// The organisation tree. A click on a department chooses it for new projects; a click on the arrow or on an
// organisation expands or collapses it.
Panel {
    id: panel

    property QtObject desk

    title: "组织树"
    note: units.count > 0 ? "%1 个单位".arg(panel.desk.tree.unitCount) : ""

    ListView {
        id: units
        objectName: "orgTree"

        anchors {
            fill: parent
            topMargin: 6
            bottomMargin: 6
        }
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        model: panel.desk.tree
        ScrollBar.vertical: SlimScrollBar {}

        delegate: Rectangle {
            id: row
            objectName: "orgUnit"

            readonly property string unitName: model.name
            readonly property bool chosen: model.selectable && model.unitId === panel.desk.departmentId

            width: ListView.view.width
            height: 28
            color: chosen ? Theme.selection : rowArea.containsMouse ? Theme.hover : "transparent"

            MouseArea {
                id: rowArea

                anchors.fill: parent
                hoverEnabled: true
                onClicked: {
                    if (model.selectable)
                        panel.desk.chooseDepartment(model.unitId, model.name);
                    else
                        panel.desk.tree.toggle(index);
                }
            }

            Text {
                id: arrow

                x: 8 + model.depth * 16
                width: 16
                height: parent.height
                visible: model.childCount > 0
                rotation: model.expanded ? 90 : 0
                text: "›"
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
                font.pixelSize: 18
                color: Theme.softText

                MouseArea {
                    objectName: "orgArrow"
                    anchors.fill: parent
                    onClicked: panel.desk.tree.toggle(index)
                }
            }

            // A square is an organisation, a disc a department.
            Rectangle {
                id: kind

                anchors {
                    left: arrow.right
                    leftMargin: 4
                    verticalCenter: parent.verticalCenter
                }
                width: 9
                height: 9
                radius: model.selectable ? 5 : 1
                color: model.selectable ? Theme.good : "transparent"
                border.width: 2
                border.color: model.selectable ? Theme.good : Theme.accent
            }

            Text {
                anchors {
                    left: kind.right
                    leftMargin: 8
                    right: parent.right
                    rightMargin: 12
                    verticalCenter: parent.verticalCenter
                }
                text: model.name
                textFormat: Text.PlainText
                elide: Text.ElideRight
                font.family: Theme.fontFamily
                font.pixelSize: 13
                color: model.selectable ? Theme.text : Theme.softText
            }
        }

        Hint {
            anchors.centerIn: parent
            visible: units.count === 0
            text: panel.desk.queue.busy ? "正在读取…" : "没有组织树"
        }
    }
}
