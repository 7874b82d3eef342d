import QtQuick 2.15
import QtQuick.Templates 2.15 as T

// A line to type in, with a hint while it is empty.
T.TextField {
    id: input

    implicitWidth: 200
    implicitHeight: 36
    padding: 6
    selectByMouse: true
    placeholderTextColor: "#8b8fa6"
    renderType: Text.NativeRendering
    verticalAlignment: TextInput.AlignVCenter

    Text {
        x: input.leftPadding
        width: input.width - input.leftPadding - input.rightPadding
        height: input.height
        visible: input.length === 0 && input.preeditText === ""
        text: input.placeholderText
        textFormat: Text.PlainText
        font: input.font
        renderType: input.renderType
        color: input.placeholderTextColor
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
    }
}
