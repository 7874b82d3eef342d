import QtQuick 2.15
import "."

// Chooses the kind of the open project.
Row {
    id: kinds

    property QtObject desk

    spacing: 1

    BarButton {
        objectName: "mainProjectButton"
        text: "主项目"
        hint: "打开主项目；主项目中可转换概要模型"
        accent: kinds.desk.isMainProject
        onClicked: kinds.desk.isMainProject = true
    }

    BarButton {
        objectName: "otherProjectButton"
        text: "其他项目"
        hint: "打开其他项目"
        accent: !kinds.desk.isMainProject
        onClicked: kinds.desk.isMainProject = false
    }
}
