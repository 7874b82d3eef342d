import QtQuick 2.15
import "../Theme"

// An error text that disappears after some time.
PageText {
    id: errorItem

    visible: false
    color: Theme.errorText
    font.pixelSize: Theme.smallTextSize
    verticalAlignment: Text.AlignBottom
    wrapMode: Text.Wrap

    Accessible.role: Accessible.AlertMessage

    Timer {
        interval: 1500
        // Depends on the visibility, not on the text: a new text does not prolong a visible error.
        running: errorItem.visible

        onTriggered: errorItem.visible = false
    }
}
