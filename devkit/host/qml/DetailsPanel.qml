import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "."

// The selected project: its record, the devices of its components, and the plug-in's page for the selected
// component.
Panel {
    id: panel

    property QtObject desk
    property QtObject component

    title: "项目详情"
    note: "ProjectNode"

    Hint {
        anchors.centerIn: parent
        visible: panel.desk.details.length === 0
        text: "选择一个项目以查看详情和设备"
    }

    ColumnLayout {
        anchors {
            fill: parent
            margins: 10
        }
        visible: panel.desk.details.length > 0
        spacing: 8

        ListView {
            id: fields

            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.maximumHeight: contentHeight
            Layout.minimumHeight: 60
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            model: panel.desk.details
            ScrollBar.vertical: SlimScrollBar {}

            delegate: Item {
                width: ListView.view.width
                height: value.height + 5

                Text {
                    id: label

                    x: 6
                    width: 48
                    text: modelData.label
                    font.family: Theme.fontFamily
                    font.pixelSize: 12
                    color: Theme.faintText
                }

                Text {
                    id: value
                    objectName: "detailValue"

                    anchors {
                        left: label.right
                        leftMargin: 4
                        right: parent.right
                        rightMargin: 12
                    }
                    text: modelData.value
                    textFormat: Text.PlainText
                    wrapMode: Text.Wrap
                    font.family: Theme.fontFamily
                    font.pixelSize: 12
                    color: Theme.text
                }
            }
        }

        Rectangle {
            Layout.fillWidth: true
            implicitHeight: 1
            color: Theme.line
        }

        RowLayout {
            Layout.leftMargin: 6
            spacing: 8

            Text {
                Layout.fillWidth: true
                text: "设备绑定  %1 / %2".arg(panel.desk.devices.boundCount).arg(devices.count)
                elide: Text.ElideRight
                font.family: Theme.fontFamily
                font.pixelSize: 13
                color: Theme.softText
            }

            BarButton {
                objectName: "bindButton"
                compact: true
                accent: true
                text: "上传绑定"
                hint: "以下列序列号替换服务器上该项目的全部设备绑定"
                enabled: panel.desk.ready && !panel.desk.queue.busy
                onClicked: panel.desk.uploadBindings()
            }
        }

        ListView {
            id: devices

            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.minimumHeight: 60
            Layout.maximumHeight: contentHeight
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            model: panel.desk.devices
            ScrollBar.vertical: SlimScrollBar {
                id: deviceBar
            }

            delegate: RowLayout {
                width: ListView.view.width - (deviceBar.visible ? deviceBar.width : 0)
                height: 30
                spacing: 8

                Rectangle {
                    objectName: "component"

                    readonly property string componentName: model.component
                    readonly property bool chosen: model.guid === panel.component.currentComp

                    Layout.fillWidth: true
                    Layout.preferredWidth: 110
                    implicitHeight: 26
                    radius: Theme.radius
                    color: chosen ? Theme.selection : componentArea.containsMouse ? Theme.hover : "transparent"

                    Text {
                        anchors {
                            fill: parent
                            leftMargin: 6
                            rightMargin: 6
                        }
                        text: model.component
                        textFormat: Text.PlainText
                        elide: Text.ElideRight
                        verticalAlignment: Text.AlignVCenter
                        font.family: Theme.fontFamily
                        font.pixelSize: 12
                        color: Theme.text
                    }

                    MouseArea {
                        id: componentArea

                        anchors.fill: parent
                        hoverEnabled: true
                        // A second click removes the selection.
                        onClicked: panel.component.currentComp = parent.chosen ? "" : model.guid
                    }
                }

                Field {
                    objectName: "serial" + index

                    Layout.fillWidth: true
                    Layout.preferredWidth: 130
                    placeholderText: "设备序列号"
                    text: model.serial
                    onTextEdited: model.serial = text
                }
            }
        }

        Loader {
            objectName: "componentPanel"

            Layout.fillWidth: true
            visible: active
            active: panel.component.currentComp !== ""
            source: "qrc:/NelvoPlugin/qmls/Extern/SDKBindParam.qml"
        }

        Item {
            Layout.fillHeight: true
            Layout.fillWidth: true
            Layout.preferredHeight: 0
        }
    }
}
