import QtQuick 2.15
import QtQuick.Controls 2.15
import "../Theme"

ProgressBar {
    id: control

    property color gradientStartColor: Theme.gradientStart
    property color gradientStopColor: Theme.gradientStop

    background: Rectangle {
        implicitWidth: 200
        implicitHeight: 14
        radius: height / 2
        opacity: 0.3
        gradient: Gradient {
            orientation: Gradient.Horizontal

            GradientStop {
                color: control.gradientStartColor
            }
            GradientStop {
                position: 1.0
                color: control.gradientStopColor
            }
        }
    }

    contentItem: Item {
        Rectangle {
            objectName: "filled"

            width: control.visualPosition * control.width
            height: parent.height
            radius: height / 2
            gradient: Gradient {
                orientation: Gradient.Horizontal

                GradientStop {
                    color: control.gradientStartColor
                }
                GradientStop {
                    position: 1.0
                    color: control.gradientStopColor
                }
            }
        }
    }
}
