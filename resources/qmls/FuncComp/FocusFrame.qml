import QtQuick 2.15
import "../Theme"

// The outline of a control that got the focus by keyboard. The mouse never shows it.
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
