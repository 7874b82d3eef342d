import QtQuick 2.15
import "qrc:/EditorCommon/qmls/BizComponent"
import "qrc:/EditorPlug/qmls/component"
import "../FuncComp"
import "../Theme" as Nelvo

// The device that is bound to a component, for the component panel of the host.
Column {
    id: bindParam

    function openDevices() {
        webViewMgr.openWeb(appPath + "/EditorWebExtern/page/device.html", Qt.rect(0, 0, 368, 440));
    }

    function clearDevice() {
        componentObject.clearDeviceData(componentObject.currentComp);
    }

    width: parent ? parent.width : implicitWidth
    spacing: 5

    Rectangle {
        objectName: "titleBar"

        width: parent.width
        height: 35
        color: globalEditColor.eGlobalBackGround
        border.color: globalEditColor.eGlobalBorderColor

        EditText {
            objectName: "titleText"

            anchors {
                left: parent.left
                leftMargin: 16
                verticalCenter: parent.verticalCenter
            }
            text: qsTr("物联绑定")
            font.pixelSize: Nelvo.Theme.textSize
            color: Nelvo.Theme.sceneText
        }
    }

    EditText {
        id: deviceLabel
        objectName: "deviceLabel"

        anchors.horizontalCenter: parent.horizontalCenter
        width: parent.width - 32
        height: 20
        text: qsTr("设备ID")
        verticalAlignment: Text.AlignVCenter
        color: Nelvo.Theme.softText
    }

    ETextBtn {
        id: deviceButton
        objectName: "deviceButton"

        anchors.horizontalCenter: parent.horizontalCenter
        width: parent.width - 32
        height: 32
        btnText: compCardData.deviceID
        eBtnBorderColor: Nelvo.Theme.deviceBorder
        eBtnTextColor: Nelvo.Theme.deviceText
        eBtnBackGround: Nelvo.Theme.deviceFace

        onSendClick: bindParam.openDevices()

        KeyArea {
            frameMargin: 3
            Accessible.name: deviceLabel.text
            Accessible.description: deviceButton.btnText

            onActivated: bindParam.openDevices()
        }

        EImageBtn {
            id: clearButton
            objectName: "clearButton"

            anchors {
                right: parent.right
                rightMargin: 8
                verticalCenter: parent.verticalCenter
            }
            width: 14
            height: 14
            bHideBorder: true
            eNormalSource: "qrc:/EditorPlug/qmls/images1/box_ic_txt_clear.png"
            eDisableSource: "qrc:/EditorPlug/qmls/images1/box_ic_txt_clear.png"
            eHoverSource: "qrc:/EditorPlug/qmls/images1/box_ic_txt_clear_hover.png"
            ePressedSource: "qrc:/EditorPlug/qmls/images1/box_ic_txt_clear_hover.png"
            tipText: qsTr("清除")

            onSendClick: bindParam.clearDevice()

            KeyArea {
                frameMargin: 3
                frameColor: Nelvo.Theme.deviceText
                Accessible.name: clearButton.tipText

                onActivated: bindParam.clearDevice()
            }
        }
    }
}
