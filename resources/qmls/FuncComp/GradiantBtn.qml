import QtQuick 2.15
import "../Theme"

// A button in the accent colour. If its mouse area is disabled, the button looks the same but does not react.
Item {
    id: button

    property alias text: label.text
    property alias mouseEnabled: mouseArea.enabled
    property color gradientStartColor: Theme.gradientStart
    property color gradientMidColor: Theme.gradientMid
    property color gradientStopColor: Theme.gradientStop
    property color glowColor: Theme.glow
    property color textColor: Theme.text
    property bool glowVisible: mouseArea.containsMouse && mouseArea.enabled

    signal clicked

    implicitWidth: 120
    implicitHeight: 36

    Rectangle {
        id: face

        anchors.fill: parent
        gradient: Gradient {
            orientation: Gradient.Horizontal

            GradientStop {
                color: button.gradientStartColor
            }
            GradientStop {
                position: 0.4
                color: button.gradientMidColor
            }
            GradientStop {
                position: 1.0
                color: button.gradientStopColor
            }
        }
    }

    Loader {
        objectName: "glow"

        anchors.fill: face
        active: visible
        visible: button.glowVisible
        source: "ButtonGlow.qml"

        onLoaded: {
            item.source = face;
            item.color = Qt.binding(() => button.glowColor);
        }
    }

    PageText {
        id: label

        anchors.centerIn: parent
        color: button.textColor
        Accessible.ignored: true
    }

    KeyArea {
        enabled: mouseArea.enabled
        Accessible.name: button.text

        onActivated: button.clicked()
    }

    MouseArea {
        id: mouseArea

        anchors.fill: parent
        hoverEnabled: true
        cursorShape: Qt.PointingHandCursor

        onClicked: button.clicked()
    }
}
