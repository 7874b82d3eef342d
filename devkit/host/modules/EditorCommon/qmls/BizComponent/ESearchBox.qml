import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../BasicComponent"
import "../Config"

// A search field with a button that clears it.
T.TextField {
    id: searchBox

    implicitWidth: 200
    implicitHeight: 30
    leftPadding: 32
    rightPadding: 28
    selectByMouse: true
    font.family: EConfig.eFontFamily
    font.pixelSize: 12
    renderType: Text.NativeRendering
    verticalAlignment: TextInput.AlignVCenter
    color: EConfig.eInputFieldText
    selectionColor: EConfig.eSelection
    selectedTextColor: EConfig.eText
    placeholderText: qsTr("搜索")

    background: Rectangle {
        color: EConfig.eInputFieldBackground
        radius: 2
        border.color: EConfig.eAccent
        border.width: searchBox.activeFocus ? 1 : 0

        Image {
            anchors {
                left: parent.left
                leftMargin: 10
                verticalCenter: parent.verticalCenter
            }
            source: "qrc:/EditorPlug/qmls/images1/box_ic_search.png"
        }
    }

    EText {
        x: searchBox.leftPadding
        width: searchBox.width - searchBox.leftPadding - searchBox.rightPadding
        height: searchBox.height
        visible: searchBox.length === 0 && searchBox.preeditText === ""
        text: searchBox.placeholderText
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        color: EConfig.eInputFieldHint
    }

    EHoverImageBtn {
        objectName: "clearButton"

        anchors {
            right: parent.right
            rightMargin: 8
            verticalCenter: parent.verticalCenter
        }
        width: sourceWidth
        height: sourceHeight
        visible: searchBox.length > 0
        img: "qrc:/EditorPlug/qmls/images1/box_ic_txt_clear.png"
        hoveredImg: "qrc:/EditorPlug/qmls/images1/box_ic_txt_clear_hover.png"
        selectedImg: "qrc:/EditorPlug/qmls/images1/box_ic_txt_clear_hover.png"

        onClick: {
            searchBox.clear();
            searchBox.forceActiveFocus();
        }
    }
}
