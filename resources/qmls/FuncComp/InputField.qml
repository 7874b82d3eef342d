import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../Theme"

// A text field with a hint that is visible while it is empty.
T.TextField {
    id: input

    padding: 6
    selectByMouse: true
    color: Theme.text
    selectionColor: Theme.fieldHighlight
    selectedTextColor: color
    placeholderTextColor: Theme.hintText
    font.family: Theme.fontFamily
    font.pixelSize: Theme.smallTextSize
    renderType: Text.NativeRendering
    verticalAlignment: TextInput.AlignVCenter

    Accessible.name: placeholderText

    PageText {
        x: input.leftPadding
        width: input.width - input.leftPadding - input.rightPadding
        height: input.height
        visible: input.length === 0 && input.preeditText === ""
        text: input.placeholderText
        font: input.font
        color: input.placeholderTextColor
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        // The field has this text as its name.
        Accessible.ignored: true
    }
}
