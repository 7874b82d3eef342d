import QtQuick 2.15
import "../Theme"

// The outline of a control that has received the focus by the Tab key. The focus by mouse shows no outline.
Rectangle {
    objectName: "focusFrame"

    // A control with a focusReason. The outline fills the parent.
    property Item control: parent

    anchors.fill: parent
    visible: control.activeFocus
             && (control.focusReason === Qt.TabFocusReason || control.focusReason === Qt.BacktabFocusReason)
    color: "transparent"
    border.color: Theme.text
    border.width: 2
}
