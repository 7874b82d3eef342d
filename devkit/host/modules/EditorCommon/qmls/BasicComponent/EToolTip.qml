import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../Config"

// A tool tip above its parent. open() shows it after `delay` milliseconds unless close() is called first.
T.ToolTip {
    id: toolTip

    // Long texts wrap; short texts keep their width.
    readonly property real maximumWidth: 320

    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: -height - 4
    implicitWidth: Math.ceil(Math.min(label.implicitWidth, maximumWidth)) + leftPadding + rightPadding
    implicitHeight: Math.ceil(label.contentHeight) + topPadding + bottomPadding
    margins: 6
    padding: 6
    leftPadding: 10
    rightPadding: 10
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent

    contentItem: EText {
        id: label

        text: toolTip.text
        wrapMode: Text.Wrap
        color: EConfig.eText
    }
    background: Rectangle {
        color: EConfig.eToolTipBackground
        border.color: EConfig.eDialogBorder
        radius: EConfig.eRadius
    }
}
