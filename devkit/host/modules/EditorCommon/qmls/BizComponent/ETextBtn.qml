import QtQuick 2.15
import "../BasicComponent"
import "../Config"

// A button with a text.
Rectangle {
    id: button

    property alias btnText: label.text
    property color eBtnBorderColor: EConfig.eDialogBorder
    property color eBtnTextColor: EConfig.eInputFieldText
    property color eBtnBackGround: EConfig.eBtnSelected

    signal sendClick

    implicitWidth: label.implicitWidth + 32
    implicitHeight: label.implicitHeight + 12
    radius: EConfig.eRadius
    color: mouseArea.containsMouse && !mouseArea.pressed ? Qt.lighter(eBtnBackGround, 1.06) : eBtnBackGround
    border.color: eBtnBorderColor

    EText {
        id: label

        anchors {
            fill: parent
            leftMargin: 10
            rightMargin: 10
        }
        color: button.eBtnTextColor
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
    }

    MouseArea {
        id: mouseArea

        anchors.fill: parent
        hoverEnabled: true
        cursorShape: Qt.PointingHandCursor

        onClicked: button.sendClick()
    }
}
