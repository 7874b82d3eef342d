import QtQuick 2.15
import QtQuick.Controls 2.15
import "."

TextField {
    id: field

    implicitHeight: 26
    leftPadding: 8
    rightPadding: 8
    topPadding: 0
    bottomPadding: 0
    selectByMouse: true
    font.family: Theme.fontFamily
    font.pixelSize: 12
    color: enabled ? Theme.text : Theme.faintText
    placeholderTextColor: Theme.faintText
    selectionColor: Theme.selection
    selectedTextColor: Theme.text
    verticalAlignment: TextInput.AlignVCenter

    background: Rectangle {
        radius: Theme.radius
        color: Theme.bar
        border.color: field.activeFocus ? Theme.accent : Theme.line
    }
}
