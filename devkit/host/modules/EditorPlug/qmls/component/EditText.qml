import QtQuick 2.15
import "qrc:/EditorCommon/qmls/BasicComponent"

// A text of the component panel.
EText {
    font.pixelSize: 14
}
