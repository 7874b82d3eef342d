import QtQuick 2.15
import "../FuncComp"
import "../Theme"

// The page that installs the new version.
Item {
    id: coverComp
    objectName: "coverComp"

    Connections {
        target: updater

        function onUpgradeStart() {
            progress.value = 0;
        }
        function onUpgradeProcess(percent) {
            progress.value = percent;
        }
        function onUpgradeEnd() {
            progress.value = 1;
        }
    }

    PageTitle {
        id: title
        objectName: "title"

        text: qsTr("安装中")
        color: Theme.text
        font.bold: true
        font.pixelSize: 18
        fading: true
    }

    ProgressItem {
        id: progress
        objectName: "progress"

        anchors {
            top: title.bottom
            topMargin: 30
            left: parent.left
            right: parent.right
            leftMargin: 26
            rightMargin: 26
        }
        Accessible.name: title.text
    }

    UpdateLog {
        objectName: "log"

        anchors {
            top: progress.bottom
            topMargin: 20
            left: progress.left
            right: progress.right
            bottom: parent.bottom
            bottomMargin: 60
        }
    }
}
