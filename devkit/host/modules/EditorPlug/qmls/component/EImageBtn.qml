import QtQuick 2.15
import "qrc:/EditorCommon/qmls/BasicComponent"
import "qrc:/EditorCommon/qmls/Config"

// A button with a picture, and with a frame unless `bHideBorder` is set.
Rectangle {
    id: button

    property url eNormalSource
    property url eDisableSource: eNormalSource
    property url eHoverSource: eNormalSource
    property url ePressedSource: eHoverSource
    property bool bHideBorder: false
    property alias tipText: picture.tipText

    signal sendClick

    implicitWidth: picture.implicitWidth
    implicitHeight: picture.implicitHeight
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
