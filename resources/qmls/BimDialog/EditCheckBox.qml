import QtQuick 2.15
import QtQuick.Controls 1.4
import QtQuick.Controls.Styles 1.4
import "../Theme" as Nelvo

// A check box with pictures for checked, unchecked and partly checked.
CheckBox {
    id: checkBox

    property url eCheckedUrl: ""
    property url eUnCheckedUrl: ""
    property color partCheckColor
    property bool partCheck: false

    style: CheckBoxStyle {
        panel: Rectangle {
            objectName: "panel"

            implicitWidth: 16
            implicitHeight: 16
            color: "transparent"
            border.color: Nelvo.Theme.outline

            Image {
                objectName: "checkImage"

                anchors.fill: parent
                visible: !checkBox.partCheck
                source: checkBox.checked ? checkBox.eCheckedUrl : checkBox.eUnCheckedUrl
            }

            Rectangle {
                objectName: "partRectangle"

                anchors.centerIn: parent
                width: parent.width / 2
                height: parent.height / 2
                visible: checkBox.partCheck
                color: checkBox.partCheckColor
            }
        }
    }
}
