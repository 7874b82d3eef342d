import QtQuick 2.15
import QtQuick.Controls 2.15
import "."

// A button of a bar: plain by default, with the accent gradient if it is the main button.
Button {
    id: button

    property bool accent: false
    property bool compact: false
    property string hint

    implicitHeight: compact ? 26 : 32
    leftPadding: compact ? 10 : 16
    rightPadding: leftPadding
    font.family: Theme.fontFamily
    font.pixelSize: compact ? 12 : 13
    hoverEnabled: true

    ToolTip.visible: hint !== "" && hovered
    ToolTip.delay: 600
    ToolTip.text: hint

    contentItem: Text {
        text: button.text
        font: button.font
        color: button.enabled ? Theme.text : Theme.faintText
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }

    background: Rectangle {
        radius: Theme.radius
        color: button.down ? Theme.selection : Theme.field
        opacity: button.hovered && !button.down ? 0.85 : 1
        border.width: button.visualFocus ? 1 : 0
        border.color: Theme.accent

        Rectangle {
            anchors.fill: parent
            anchors.margins: button.visualFocus ? 1 : 0
            visible: button.accent && button.enabled && !button.down
            radius: Theme.radius
            gradient: Gradient {
                orientation: Gradient.Horizontal
                GradientStop {
                    position: 0
                    color: Theme.gradientStart
                }
                GradientStop {
                    position: 1
                    color: Theme.gradientStop
                }
            }
        }
    }
}
