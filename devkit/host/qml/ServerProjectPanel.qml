import QtQuick 2.15
import QtQuick.Layouts 1.15
import "."

// The projects of the service. The selected project can be uploaded with another name.
Panel {
    id: panel

    property QtObject desk

    title: "服务器项目"
    note: list.count > 0 ? String(list.count) : ""
    tools: BarButton {
        objectName: "refreshButton"
        compact: true
        text: "刷新"
        hint: "重新读取项目和组织树"
        enabled: panel.desk.ready && !panel.desk.queue.busy
        onClicked: panel.desk.refresh()
    }

    ProjectListView {
        id: list
        objectName: "serverProjects"

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
        model: panel.desk.serverProjects
        hint: "没有项目"
    }

    RowLayout {
        id: actions

        anchors {
            left: parent.left
            right: parent.right
            bottom: parent.bottom
            margins: 10
        }
        spacing: 8

        NameField {
            id: name
            objectName: "serverName"

            Layout.fillWidth: true
            desk: panel.desk
            projects: panel.desk.serverProjects
            placeholderText: "请选择项目"
        }

        BarButton {
            objectName: "serverRenameButton"
            compact: true
            accent: true
            text: "改名上传"
            hint: "以新名称上传所选项目"
            enabled: name.isNewName && !panel.desk.queue.busy
            onClicked: panel.desk.renameServerProject(panel.desk.selectedId, name.text)
        }
    }
}
