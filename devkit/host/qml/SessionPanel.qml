import QtQuick 2.15
import QtQuick.Controls 2.15
import "."

// All fields of the session, as the plug-in passed it.
Panel {
    id: panel

    property var session: []

    title: "登录会话"
    note: "LoginSession"

    ListView {
        id: fields
        objectName: "sessionFields"

        anchors.fill: parent
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        model: panel.session
        topMargin: 4
        bottomMargin: 8
        ScrollBar.vertical: SlimScrollBar {}

        delegate: Item {
            id: row

            readonly property bool isFlag: modelData.field === "loggedIn"

            width: ListView.view.width
            height: value.y + value.height + 8

            Text {
                id: label

                x: Theme.spacing
                y: 8
                text: modelData.label
                font.family: Theme.fontFamily
                font.pixelSize: 12
                color: Theme.softText
            }

            Text {
                anchors {
                    baseline: label.baseline
                    right: parent.right
                    rightMargin: Theme.spacing
                }
                text: modelData.field
                textFormat: Text.PlainText
                font.family: "monospace"
                font.pixelSize: 11
                color: Theme.faintText
            }

            Rectangle {
                x: Theme.spacing
                anchors.verticalCenter: value.verticalCenter
                visible: row.isFlag
                width: 8
                height: 8
                radius: 4
                color: modelData.value === "true" ? Theme.good : Theme.bad
            }

            TextEdit {
                id: value
                objectName: "sessionValue"

                property string field: modelData.field

                anchors {
                    top: label.bottom
                    topMargin: 3
                    left: parent.left
                    right: parent.right
                    leftMargin: Theme.spacing + (row.isFlag ? 16 : 0)
                    rightMargin: Theme.spacing
                }
                readOnly: true
                selectByMouse: true
                text: modelData.value === "" ? "（空）" : modelData.value
                textFormat: TextEdit.PlainText
                wrapMode: TextEdit.WrapAnywhere
                font.family: Theme.fontFamily
                font.pixelSize: 13
                color: modelData.value === "" ? Theme.faintText : Theme.text
                selectionColor: Theme.selection
                selectedTextColor: Theme.text
            }

            Rectangle {
                anchors {
                    bottom: parent.bottom
                    left: parent.left
                    right: parent.right
                    leftMargin: Theme.spacing
                    rightMargin: Theme.spacing
                }
                height: 1
                color: Theme.line
                opacity: 0.6
                visible: index < fields.count - 1
            }
        }
    }
}
