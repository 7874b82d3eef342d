import QtQuick 2.15
import "../Theme"

// An error text that goes away by itself.
PageText {
    id: errorItem

    visible: false
    text: ""
    color: Theme.errorText
    font.pixelSize: Theme.smallTextSize
    verticalAlignment: Text.AlignBottom
    wrapMode: Text.Wrap

    Timer {
        interval: 1500
        // Follows the visibility and not the text: a new text on a visible error does not prolong its time.
        running: errorItem.visible

        onTriggered: errorItem.visible = false
    }
}
