import QtQuick 2.15
import "../FuncComp"
import "../Theme"

// The page that offers a new version.
Item {
    id: updateComp
    objectName: "updateComp"

    // Shows the next page first, so that the page receives all signals of the download.
    function upgrade() {
        root.replacePage("DownloadComp");
        loginCtrl.download();
    }

    PageTitle {
        id: title
        objectName: "title"

        text: qsTr("检测到新版本！")
    }

    RichTextPanel {
        objectName: "releaseNotes"

        anchors {
            top: title.bottom
            topMargin: 30
            left: buttons.left
            right: buttons.right
            bottom: buttons.top
            bottomMargin: 20
        }
        name: qsTr("更新内容")
        // When the host shuts down, `updater` becomes null before the window is deleted.
        text: updater ? asItIs(updater.latestVersion) + "<br/> 更新内容: <br/>" + updater.changeLog : ""
    }

    Item {
        id: buttons
        objectName: "buttons"

        anchors {
            left: parent.left
            right: parent.right
            leftMargin: 26
            rightMargin: 26
            bottom: parent.bottom
            bottomMargin: 40
        }
        height: 36

        GradiantBtn {
            objectName: "skipButton"

            x: 4
            width: parent.width / 2 - 18
            text: qsTr("跳过")
            gradientStartColor: Theme.window
            gradientMidColor: Theme.window
            gradientStopColor: Theme.window
            glowColor: Theme.quietText
            textColor: Theme.quietText
            glowVisible: true

            onClicked: root.replacePage("ValidComp")
        }

        GradiantBtn {
            objectName: "upgradeButton"

            x: parent.width / 2 + 14
            width: parent.width / 2 - 18
            text: qsTr("升级")

            onClicked: updateComp.upgrade()
        }
    }
}
