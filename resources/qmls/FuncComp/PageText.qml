import QtQuick 2.15
import "../Theme"

// Text in the style of the login window's pages.
Text {
    textFormat: Text.PlainText
    color: Theme.text
    font.family: Theme.fontFamily
    font.pixelSize: Theme.textSize
    renderType: Text.NativeRendering

    Accessible.name: text
}
