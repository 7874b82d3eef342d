import QtQuick 2.15
import QtQuick.Layouts 1.15
import "."

// A part of the window with a title, `tools` beside the title, and the children below it.
Rectangle {
    id: panel

    property string title
    property string note
    property alias tools: toolRow.data
    default property alias content: body.data

    color: Theme.panel
    radius: Theme.radius
    border.color: Theme.line

    RowLayout {
        id: header

        anchors {
            top: parent.top
            left: parent.left
            right: parent.right
            leftMargin: Theme.spacing
            rightMargin: 12
        }
        height: 48
        spacing: 10

        Rectangle {
            implicitWidth: 3
            implicitHeight: 14
            radius: 1
            color: Theme.accent
        }

        Text {
            text: panel.title
            font.family: Theme.fontFamily
            font.pixelSize: 14
            color: Theme.text
        }

        Text {
            Layout.fillWidth: true
            text: panel.note
            font.family: Theme.fontFamily
            font.pixelSize: 12
            color: Theme.faintText
            elide: Text.ElideRight
        }

        Row {
            id: toolRow
            spacing: 8
        }
    }

    Rectangle {
        id: separator

        anchors {
            top: header.bottom
            left: parent.left
            right: parent.right
            leftMargin: 1
            rightMargin: 1
        }
        height: 1
        color: Theme.line
    }

    Item {
        id: body

        anchors {
            top: separator.bottom
            left: parent.left
            right: parent.right
            bottom: parent.bottom
            margins: 1
        }
    }
}
