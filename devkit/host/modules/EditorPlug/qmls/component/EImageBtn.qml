import QtQuick 2.15
import "qrc:/EditorCommon/qmls/BasicComponent"
import "qrc:/EditorCommon/qmls/Config"

// A button with a picture, and with a frame unless `bHideBorder` is set. Its user sets the size and all pictures.
Rectangle {
    id: button

    property url eNormalSource
    property url eDisableSource
    property url eHoverSource
    property url ePressedSource
    property bool bHideBorder: false
    property alias tipText: picture.tipText

    signal sendClick

    color: "transparent"
    border.color: EConfig.eDialogBorder
    border.width: bHideBorder ? 0 : 1

    EHoverImageBtn {
        id: picture

        anchors.fill: parent
        anchors.margins: button.border.width
        img: button.eNormalSource
        hoveredImg: button.eHoverSource
        selectedImg: button.ePressedSource
        disabledImg: button.eDisableSource

        onClick: button.sendClick()
    }
}
