import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../Config"

// A radio button. Radio buttons with the same parent are exclusive.
T.RadioButton {
    id: button

    property url checkedUrl
    property url normalUrl

    implicitWidth: leftPadding + contentItem.implicitWidth + rightPadding
    implicitHeight: Math.max(indicator.implicitHeight, contentItem.implicitHeight)
    padding: 0
    leftPadding: indicator.implicitWidth + spacing
    spacing: 6
    font.family: EConfig.eFontFamily
    font.pixelSize: 12
    hoverEnabled: true

    indicator: Image {
        y: Math.round((button.height - height) / 2)
        source: button.checked ? button.checkedUrl : button.normalUrl
    }
    contentItem: EText {
        text: button.text
        font: button.font
        color: button.checked || button.hovered || button.visualFocus ? EConfig.eText : EConfig.eInputFieldText
        verticalAlignment: Text.AlignVCenter
    }
}
