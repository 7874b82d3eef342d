import QtQuick 2.15
import QtQuick.Layouts 1.15
import "."

// The projects that exist only in this host so far.
Panel {
    id: panel

    property QtObject desk

    title: "本地项目"
    note: list.count > 0 ? String(list.count) : ""

    ProjectListView {
        id: list
        objectName: "localProjects"

        anchors {
            top: parent.top
            left: parent.left
            right: parent.right
            bottom: actions.top
            margins: 4
            leftMargin: 0
            rightMargin: 0
        }
        desk: panel.desk
        model: panel.desk.localProjects
        hint: "尚无本地项目\n退出程序后不保留"
    }

    ColumnLayout {
        id: actions

        anchors {
            left: parent.left
            right: parent.right
            bottom: parent.bottom
            margins: 10
        }
        spacing: 8

        RowLayout {
            spacing: 8

            NameField {
                id: name
                objectName: "localName"

                Layout.fillWidth: true
                desk: panel.desk
                projects: panel.desk.localProjects
                placeholderText: "请选择项目"
            }

            BarButton {
                objectName: "localRenameButton"
                compact: true
                text: "改名"
                enabled: name.isNewName && !panel.desk.queue.busy
                onClicked: panel.desk.renameLocalProject(panel.desk.selectedId, name.text)
            }

            BarButton {
                objectName: "removeButton"
                compact: true
                text: "移除"
                enabled: name.hasProject && !panel.desk.queue.busy
                onClicked: panel.desk.removeLocalProject(panel.desk.selectedId)
            }

            BarButton {
                objectName: "uploadButton"
                compact: true
                accent: true
                text: "上传"
                hint: "把所选项目上传到服务器"
                enabled: name.hasProject && panel.desk.ready && !panel.desk.queue.busy
                onClicked: panel.desk.uploadLocalProject(panel.desk.selectedId)
            }
        }

        Rectangle {
            Layout.fillWidth: true
            implicitHeight: 1
            color: Theme.line
        }

        Text {
            objectName: "department"

            Layout.fillWidth: true
            text: panel.desk.departmentId === "" ? "请先在组织树中选择部门" : "部门：" + panel.desk.departmentName
            textFormat: Text.PlainText
            elide: Text.ElideRight
            font.family: Theme.fontFamily
            font.pixelSize: 12
            color: panel.desk.departmentId === "" ? Theme.warning : Theme.softText
        }

        RowLayout {
            spacing: 8

            Field {
                id: newName
                objectName: "newName"

                Layout.fillWidth: true
                placeholderText: "新项目名称"
                onAccepted: createButton.click()
            }

            BarButton {
                id: createButton
                objectName: "createButton"
                compact: true
                text: "新建"
                enabled: newName.text.trim() !== "" && panel.desk.departmentId !== "" && !panel.desk.queue.busy
                onClicked: {
                    panel.desk.createProject(newName.text);
                    newName.clear();
                }
            }
        }
    }
}
