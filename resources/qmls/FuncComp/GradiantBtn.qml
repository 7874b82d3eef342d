import QtQuick 2.15
import QtGraphicalEffects 1.0

// The accent button. It looks the same while its mouse area is disabled; it only stops reacting.
Item {
    id: button

    property alias text: label.text
    property alias mouseEnabled: mouseArea.enabled
    property color gradientStartColor: "#2997b4"
    property color gradientMidColor: "#277ca3"
    property color gradientStopColor: "#255187"
    property color glowColor: "#8397ff"
    property color textColor: "#ffffff"
    property bool glowVisible: mouseArea.containsMouse && mouseArea.enabled

    signal clicked

    implicitWidth: 120
    implicitHeight: 36

    LinearGradient {
        id: face

        anchors.fill: parent
        start: Qt.point(0, 0)
        end: Qt.point(width, 0)
        gradient: Gradient {
            GradientStop {
                position: 0.0
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

    Glow {
        objectName: "glow"

        anchors.fill: face
        visible: button.glowVisible
        source: face
        samples: 7
        color: button.glowColor
    }

    Text {
        id: label

        anchors.centerIn: parent
        textFormat: Text.PlainText
        font.family: "微软雅黑"
        font.pixelSize: 14
        color: button.textColor
    }

    MouseArea {
        id: mouseArea

        anchors.fill: parent
        hoverEnabled: true
        cursorShape: Qt.PointingHandCursor

        onClicked: button.clicked()
    }
}
