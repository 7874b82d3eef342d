import QtQuick 2.15
import QtQuick.Controls 2.15
import "."

// A list of scene projects. A click selects a project.
ListView {
    id: list

    property QtObject desk
    property string hint

    clip: true
    boundsBehavior: Flickable.StopAtBounds
    ScrollBar.vertical: SlimScrollBar {}

    delegate: Rectangle {
        objectName: "project"

        readonly property string projectId: model.projectId
        readonly property string projectName: model.name

        width: ListView.view.width
        height: 46
        color: model.projectId === list.desk.selectedId ? Theme.selection
                                                        : rowArea.containsMouse ? Theme.hover : "transparent"

        Text {
            id: name

            anchors {
                left: parent.left
                right: parent.right
                leftMargin: Theme.spacing
                rightMargin: 12
            }
            y: 5
            text: model.name
            textFormat: Text.PlainText
            elide: Text.ElideRight
            font.family: Theme.fontFamily
            font.pixelSize: 13
            color: Theme.text
        }

        Text {
            anchors {
                left: name.left
                right: name.right
                top: name.bottom
                topMargin: 2
            }
            text: [model.code, model.department].filter(text => text !== "").join("  ·  ")
            textFormat: Text.PlainText
            elide: Text.ElideRight
            font.family: Theme.fontFamily
            font.pixelSize: 11
            color: Theme.faintText
        }

        MouseArea {
            id: rowArea

            anchors.fill: parent
            hoverEnabled: true
            onClicked: list.desk.select(model.projectId)
        }
    }

    Hint {
        anchors.centerIn: parent
        visible: list.count === 0
        text: list.hint
    }
}
