import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "."

// The imported models, or the PDS projects of one of them.
Panel {
    id: panel

    property QtObject desk

    // The model whose PDS projects are shown; none if its name is empty.
    property string pdsModel
    // False if the database does not contain the model: the plug-in then keeps the previous PDS projects.
    property bool pdsKnown: false

    function showPds(guid, name) {
        pdsKnown = false;
        pdsMgr.getPdsProj(guid);
        pdsModel = name;
    }

    title: pdsModel === "" ? "BIM 模型" : "PDS 工程"
    note: {
        if (pdsModel !== "")
            return pdsMgr.bCheckedPds ? "已选 %1 个".arg(pdsMgr.checkList.length) : "未选择";
        return "下载与转换仅为模拟";
    }
    tools: BarButton {
        objectName: "pdsBackButton"
        visible: panel.pdsModel !== ""
        compact: true
        text: "返回"
        onClicked: panel.pdsModel = ""
    }

    Connections {
        target: pdsMgr

        function onPdsProjListChanged() {
            panel.pdsKnown = true;
        }
    }

    ListView {
        id: models
        objectName: "models"

        anchors {
            fill: parent
            topMargin: 4
            bottomMargin: 4
        }
        visible: panel.pdsModel === ""
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        model: panel.desk.models
        ScrollBar.vertical: SlimScrollBar {}

        onCountChanged: Qt.callLater(positionViewAtEnd)

        delegate: Item {
            objectName: "model"

            readonly property string modelName: model.name
            readonly property int percent: model.percent

            width: ListView.view.width
            height: 46

            ColumnLayout {
                anchors {
                    left: parent.left
                    leftMargin: Theme.spacing
                    right: action.left
                    rightMargin: 8
                    verticalCenter: parent.verticalCenter
                }
                spacing: 2

                Text {
                    Layout.fillWidth: true
                    text: model.name
                    textFormat: Text.PlainText
                    elide: Text.ElideRight
                    font.family: Theme.fontFamily
                    font.pixelSize: 13
                    color: Theme.text
                }

                Text {
                    Layout.fillWidth: true
                    text: model.kind + "  ·  " + (model.inMainProject ? "主项目" : "其他项目")
                    elide: Text.ElideRight
                    font.family: Theme.fontFamily
                    font.pixelSize: 11
                    color: Theme.faintText
                }
            }

            Item {
                id: action

                anchors {
                    right: parent.right
                    rightMargin: 14
                    verticalCenter: parent.verticalCenter
                }
                width: 48
                height: 26

                Text {
                    anchors.fill: parent
                    visible: !pdsButton.visible
                    text: model.percent < 100 ? model.percent + " %" : "完成"
                    horizontalAlignment: Text.AlignRight
                    verticalAlignment: Text.AlignVCenter
                    font.family: Theme.fontFamily
                    font.pixelSize: 12
                    color: model.percent < 100 ? Theme.accent : Theme.good
                }

                BarButton {
                    id: pdsButton
                    objectName: "pdsButton"

                    readonly property string modelName: model.name

                    anchors.fill: parent
                    visible: model.readable
                    compact: true
                    text: "PDS"
                    hint: "读取该模型下的 PDS 工程"
                    onClicked: panel.showPds(model.guid, model.name)
                }
            }

            Rectangle {
                anchors.bottom: parent.bottom
                x: Theme.spacing
                width: (parent.width - 2 * Theme.spacing) * model.percent / 100
                height: 2
                radius: 1
                visible: model.percent < 100
                color: Theme.accent
            }
        }

        Hint {
            anchors.centerIn: parent
            visible: models.count === 0
            text: "尚未导入模型\n请在 BIM 对话框中下载"
        }
    }

    ColumnLayout {
        anchors {
            fill: parent
            topMargin: 10
            bottomMargin: 4
        }
        visible: panel.pdsModel !== ""
        spacing: 6

        Text {
            objectName: "pdsModel"

            Layout.fillWidth: true
            Layout.leftMargin: Theme.spacing
            Layout.rightMargin: Theme.spacing
            text: panel.pdsModel
            textFormat: Text.PlainText
            elide: Text.ElideRight
            font.family: Theme.fontFamily
            font.pixelSize: 12
            color: Theme.softText
        }

        ListView {
            id: pdsProjects
            objectName: "pdsProjects"

            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            model: panel.pdsKnown ? pdsMgr.pdsProjList : []
            ScrollBar.vertical: SlimScrollBar {}

            delegate: CheckRow {
                objectName: "pdsProject"

                width: ListView.view.width
                text: modelData.name
                checked: pdsMgr.checkList.includes(modelData.guid)
                onToggled: pdsMgr.checkPdsProj(modelData.guid, !checked)
            }

            Hint {
                anchors.centerIn: parent
                visible: pdsProjects.count === 0
                text: panel.pdsKnown ? "该模型下没有 PDS 工程" : "模型库中没有该模型"
            }
        }
    }
}
