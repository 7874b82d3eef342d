import QtQuick 2.15
import "."

// A handle between an upper and a lower part. Dragging it changes the height of the lower part.
Item {
    id: splitter

    property real lowerHeight
    property real least: 0
    property real most: 0

    implicitHeight: 12

    Rectangle {
        anchors.centerIn: parent
        width: 40
        height: 3
        radius: 1
        color: area.containsMouse || area.pressed ? Theme.accent : Theme.field
    }

    MouseArea {
        id: area

        property real grip

        anchors.fill: parent
        hoverEnabled: true
        cursorShape: Qt.SplitVCursor
        onPressed: grip = mouse.y
        onPositionChanged: {
            if (pressed)
                splitter.lowerHeight = Math.max(splitter.least,
                                                Math.min(splitter.most, splitter.lowerHeight + grip - mouse.y));
        }
    }
}
