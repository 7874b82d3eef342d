import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"
import "qrc:/EditorCommon/qmls/BizComponent"
import "../FuncComp"
import "../Theme" as Nelvo

// The panel with the models of one kind, and the filters of their list.
EDialog {
    id: frimPanel

    // The whole panel reads the kind of the models from this property, which changes only with the manager's
    // signal. During a fetch the rows of the old list are still visible, and the panel must switch together
    // with its rows. When the host shuts down, the plug-in's objects become null before the panel is deleted.
    readonly property bool viewDWGList: pdsMgr ? pdsMgr.bViewDWGBimList : false
    readonly property bool mainProject: editConext ? editConext.isMainProject : false
    // Outline models are available for BIM models in a main project.
    readonly property bool outlineOffered: mainProject && !viewDWGList

    // The models of pdsMgr.bimProjList by column, or null. Set by the plug-in.
    property QtObject modelColumns: null

    // The models of pdsMgr.bimProjList. A read of that property takes several times as long: Qt then converts
    // each model separately.
    function modelsOf(columns) {
        const { deptId, guid, name, ppid, profImg, profTipText, profession, size } = columns;
        const models = [];
        const count = guid ? guid.length : 0;
        for (let i = 0; i < count; ++i) {
            const model = { deptId: deptId[i], guid: guid[i], name: name[i], ppid: ppid[i], profImg: profImg[i],
                            profTipText: profTipText[i], profession: profession[i] };
            // Drawings have no size.
            if (size)
                model.size = size[i];
            models.push(model);
        }
        return models;
    }

    function clearselectText() {
        errorText.text = "";
        searchBox.text = "";
        orgCheck.clearSelect();
    }

    function download(guid) {
        if (!bimControl.checkBimProjValid(guid, editConext.isMainProject)) {
            errorText.text = qsTr("BIM工程不能重复导入");
            return;
        }
        errorText.text = "";
        pdsMgr.downLoadBimProj(guid);
    }

    function convert(guid) {
        pdsMgr.convertSimplyMode(guid, !speedProprityCheck.checked);
    }

    width: 360
    height: 444

    contentItem: Item {
        EDialogTitle {
            id: dialogTitle
            objectName: "dialogTitle"

            anchors {
                left: parent.left
                right: parent.right
            }
            title: frimPanel.viewDWGList ? qsTr("关联DWG模型") : qsTr("关联BIM模型")

            Accessible.role: Accessible.TitleBar
            Accessible.name: title

            onClick: frimPanel.close()
            onMove: {
                frimPanel.x += xOffset;
                frimPanel.y += yOffset;
            }
        }

        EProjOrgCheck {
            id: orgCheck
            objectName: "orgCheck"

            anchors {
                top: dialogTitle.bottom
                topMargin: 8
            }
            x: 20
            width: parent.width - 40
            height: 26

            onSigSelectDeptId: pdsMgr.searchBydeptId(deptID)
        }

        ESearchBox {
            id: searchBox
            objectName: "searchBox"

            anchors {
                top: orgCheck.bottom
                topMargin: 8
            }
            x: 20
            width: parent.width - 40
            height: 26

            Accessible.name: qsTr("搜索")

            onTextChanged: searchList.searchText = text
        }

        EScrollView {
            objectName: "scrollView"

            anchors {
                top: searchBox.bottom
                topMargin: 8
                bottom: radioRow.top
                bottomMargin: 8
            }
            width: parent.width
            eScrollBackGround: EConfig.eDialogBackground

            ESearchList {
                id: searchList
                objectName: "searchList"

                anchors {
                    fill: parent
                    leftMargin: 20
                    rightMargin: 20
                }
                clip: true
                dataModel: {
                    if (!pdsMgr)
                        return [];
                    return frimPanel.modelColumns ? frimPanel.modelsOf(frimPanel.modelColumns.columns)
                                                  : pdsMgr.bimProjList;
                }
                listCountFunc: () => searchList.dataModel.length
                listDataFunc: index => searchList.dataModel[index].name
                groupdelegateItem: projectRow
            }
        }

        Row {
            id: radioRow
            objectName: "radioRow"

            anchors {
                left: parent.left
                leftMargin: 20
                right: parent.right
                rightMargin: 20
                bottom: errorText.top
                bottomMargin: 8
            }
            spacing: 10
            visible: frimPanel.outlineOffered

            ERadioBtn {
                id: speedProprityCheck
                objectName: "speedProprityCheck"

                checked: true
                checkedUrl: "qrc:/EditorPlug/qmls/images1/checkBox_selected.png"
                normalUrl: "qrc:/EditorPlug/qmls/images1/checkBox.png"
                text: qsTr("性能优先")

                Accessible.name: text

                FocusFrame {
                    anchors.margins: -3
                }
            }

            ERadioBtn {
                objectName: "completionCheck"

                checkedUrl: "qrc:/EditorPlug/qmls/images1/checkBox_selected.png"
                normalUrl: "qrc:/EditorPlug/qmls/images1/checkBox.png"
                text: qsTr("完整度优先")

                Accessible.name: text

                FocusFrame {
                    anchors.margins: -3
                }
            }
        }

        EText {
            id: errorText
            objectName: "errorText"

            anchors {
                bottom: parent.bottom
                bottomMargin: 20
            }
            x: 30
            height: 20
            font.pixelSize: Nelvo.Theme.smallTextSize
            color: Nelvo.Theme.errorText

            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
            Accessible.ignored: text === ""
        }
    }

    Component {
        id: projectRow

        Rectangle {
            id: rowFace

            width: searchList.width
            height: 40
            color: EConfig.eDialogBackground

            Accessible.role: Accessible.ListItem
            Accessible.name: modelData.name

            Image {
                id: professionImage
                objectName: "professionImage"

                anchors {
                    left: parent.left
                    leftMargin: 10
                    verticalCenter: parent.verticalCenter
                }
                source: modelData.profImg
            }

            EText {
                id: nameText
                objectName: "nameText"

                anchors {
                    left: professionImage.right
                    leftMargin: 6
                    right: outlineButton.left
                    rightMargin: 10
                    verticalCenter: parent.verticalCenter
                }
                text: modelData.name
                elide: Text.ElideRight
                color: EConfig.eInputFieldText

                MouseArea {
                    anchors.fill: parent
                    hoverEnabled: true
                    acceptedButtons: Qt.NoButton

                    onEntered: nameTip.open()
                    onExited: nameTip.close()
                }

                EToolTip {
                    id: nameTip
                    objectName: "nameTip"

                    text: nameText.text
                    delay: 200
                }
            }

            EHoverImageBtn {
                id: downloadButton
                objectName: "downloadButton"

                anchors {
                    right: parent.right
                    rightMargin: 15
                    verticalCenter: parent.verticalCenter
                }
                width: sourceWidth
                height: sourceHeight
                img: "qrc:/NelvoPlugin/qmls/images/pop_ic_bim.png"
                hoveredImg: "qrc:/NelvoPlugin/qmls/images/pop_ic_bim_hover.png"
                selectedImg: "qrc:/NelvoPlugin/qmls/images/pop_ic_bim_hover.png"
                disabledImg: "qrc:/NelvoPlugin/qmls/images/pop_ic_bim.png"
                tipText: qsTr("下载模型")

                onClick: frimPanel.download(modelData.guid)
            }

            EHoverImageBtn {
                id: outlineButton
                objectName: "outlineButton"

                anchors {
                    right: downloadButton.left
                    rightMargin: 10
                    verticalCenter: parent.verticalCenter
                }
                width: sourceWidth
                height: sourceHeight
                visible: frimPanel.outlineOffered
                img: "qrc:/NelvoPlugin/qmls/images/pop_ic_muxing.png"
                hoveredImg: "qrc:/NelvoPlugin/qmls/images/pop_ic_muxing_hover.png"
                selectedImg: "qrc:/NelvoPlugin/qmls/images/pop_ic_muxing_hover.png"
                disabledImg: "qrc:/NelvoPlugin/qmls/images/pop_ic_muxing.png"
                tipText: qsTr("转换概要模型")

                onClick: frimPanel.convert(modelData.guid)
            }

            KeyArea {
                anchors.fill: outlineButton
                row: rowFace
                visible: outlineButton.visible
                Accessible.name: outlineButton.tipText
                Accessible.description: modelData.name

                onActivated: frimPanel.convert(modelData.guid)
            }

            KeyArea {
                anchors.fill: downloadButton
                row: rowFace
                Accessible.name: downloadButton.tipText
                Accessible.description: modelData.name

                onActivated: frimPanel.download(modelData.guid)
            }
        }
    }
}
