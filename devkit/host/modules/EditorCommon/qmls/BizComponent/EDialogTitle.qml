import QtQuick 2.15
import "../BasicComponent"
import "../Config"

// The title bar of a dialog. Emits `move` while the user drags it, and `click` when the user clicks its close
// button.
Rectangle {
    id: titleBar

    property alias title: label.text

    signal click
    signal move(real xOffset, real yOffset)

    implicitHeight: 40
    color: EConfig.eDialogTitle
    radius: EConfig.eRadius

    // Covers the round corners at the bottom.
    Rectangle {
        anchors {
            left: parent.left
            right: parent.right
            bottom: parent.bottom
        }
        height: parent.radius
        color: parent.color
    }

    Rectangle {
        anchors {
            left: parent.left
            leftMargin: 20
            verticalCenter: parent.verticalCenter
        }
        width: 3
        height: 14
        radius: 1
        color: EConfig.eAccent
    }

    EText {
        id: label

        anchors {
            left: parent.left
            leftMargin: 33
            right: closeButton.left
            rightMargin: 10
            verticalCenter: parent.verticalCenter
        }
        elide: Text.ElideRight
        font.pixelSize: 14
        color: EConfig.eText
    }

    MouseArea {
        property real pressX: 0
        property real pressY: 0

        anchors.fill: parent

        onPressed: {
            pressX = mouse.x;
            pressY = mouse.y;
        }
        // Compares with the position of the press, because the bar moves with the dialog.
        onPositionChanged: titleBar.move(mouse.x - pressX, mouse.y - pressY)
    }

    EHoverImageBtn {
        id: closeButton
        objectName: "closeButton"

        anchors {
            right: parent.right
            rightMargin: 12
            verticalCenter: parent.verticalCenter
        }
        width: sourceWidth
        height: sourceHeight
        img: "qrc:/EditorPlug/qmls/images1/dialog_close.png"
        hoveredImg: "qrc:/EditorPlug/qmls/images1/dialog_close_hover.png"
        selectedImg: "qrc:/EditorPlug/qmls/images1/dialog_close_hover.png"

        onClick: titleBar.click()
    }
}
