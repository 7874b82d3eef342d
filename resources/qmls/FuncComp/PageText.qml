import QtQuick 2.15
import "../Theme"

// Text as the pages of the login window show it.
Text {
    textFormat: Text.PlainText
    color: Theme.text
    font.family: Theme.fontFamily
    font.pixelSize: Theme.textSize
    renderType: Text.NativeRendering
}
