import QtQuick 2.15

// An error text that goes away by itself.
Text {
    id: errorItem

    visible: false
    text: ""
    textFormat: Text.PlainText
    color: "#1473e6"
    font.family: "微软雅黑"
    renderType: Text.NativeRendering
    font.pixelSize: 12
    verticalAlignment: Text.AlignBottom
    wrapMode: Text.Wrap

    Timer {
        interval: 1500
        // Follows the visibility and not the text: a new text on a visible error does not prolong its time.
        running: errorItem.visible

        onTriggered: errorItem.visible = false
    }
}
