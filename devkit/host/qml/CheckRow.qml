import QtQuick 2.15
import "."

// A row with a check mark. A click only emits `toggled`; the parent sets the mark.
Rectangle {
    id: row

    property string text
    property bool checked: false

    signal toggled

    height: 30
    color: rowArea.containsMouse ? Theme.hover : "transparent"

    Rectangle {
        id: box

        x: Theme.spacing
        anchors.verticalCenter: parent.verticalCenter
        width: 16
        height: 16
        radius: 3
        color: row.checked ? Theme.accent : Theme.bar
        border.color: row.checked ? Theme.accent : Theme.faintText

        Text {
            anchors.centerIn: parent
            visible: row.checked
            text: "✓"
            font.pixelSize: 12
            font.bold: true
            color: Theme.text
        }
    }

    Text {
        anchors {
            left: box.right
            leftMargin: 10
            right: parent.right
            rightMargin: 12
            verticalCenter: parent.verticalCenter
        }
        text: row.text
        textFormat: Text.PlainText
        elide: Text.ElideRight
        font.family: Theme.fontFamily
        font.pixelSize: 13
        color: Theme.text
    }

    MouseArea {
        id: rowArea

        anchors.fill: parent
        hoverEnabled: true
        onClicked: row.toggled()
    }
}
