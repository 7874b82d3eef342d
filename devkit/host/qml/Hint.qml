import QtQuick 2.15
import "."

// The text of an empty list.
Text {
    width: parent.width - 2 * Theme.spacing
    horizontalAlignment: Text.AlignHCenter
    wrapMode: Text.Wrap
    font.family: Theme.fontFamily
    font.pixelSize: 13
    color: Theme.faintText
}
