import QtQuick 2.15
import "../Config"

Text {
    textFormat: Text.PlainText
    font.family: EConfig.eFontFamily
    font.pixelSize: 12
    renderType: Text.NativeRendering
    color: EConfig.eInputFieldText
}
