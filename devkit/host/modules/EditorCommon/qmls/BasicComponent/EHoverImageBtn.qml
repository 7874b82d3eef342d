import QtQuick 2.15
import QtQuick.Window 2.15

// A button with a picture for each state and with a tool tip. Its user sets the size and all pictures.
Item {
    id: button

    property url img
    property url hoveredImg
    property url selectedImg
    property url disabledImg
    property bool selected: false
    property alias tipText: tip.text
    // The natural size of the picture.
    readonly property real sourceWidth: picture.implicitWidth
    readonly property real sourceHeight: picture.implicitHeight

    signal click

    Image {
        id: picture
        objectName: "picture"

        anchors.fill: parent
        source: {
            if (!button.enabled)
                return button.disabledImg;
            if (button.selected || mouseArea.pressed)
                return button.selectedImg;
            return mouseArea.containsMouse ? button.hoveredImg : button.img;
        }
    }

    EToolTip {
        id: tip
        objectName: "tip"

        delay: 600
        // A row of a list that is being replaced is in no window any more.
        visible: text !== "" && mouseArea.containsMouse && !mouseArea.pressed && button.Window.window !== null
    }

    MouseArea {
        id: mouseArea

        anchors.fill: parent
        hoverEnabled: true
        cursorShape: Qt.PointingHandCursor

        onClicked: button.click()
    }
}
