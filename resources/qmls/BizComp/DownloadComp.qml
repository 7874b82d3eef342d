import QtQuick 2.15
import "../FuncComp"
import "../Theme"

// The page that downloads the new version.
Item {
    id: downloadComp
    objectName: "downloadComp"

    property bool downloadFinished: false

    function megabytes(bytes) {
        return (bytes / 1024 / 1024).toFixed(2);
    }

    // Shows the next page first, so that the page receives all signals of the installation.
    function install() {
        root.replacePage("CoverComp");
        loginCtrl.upgrade();
    }

    Connections {
        target: updater

        function onDownloadStarted(filePath, bytesTotal) {
            console.log("onDownloadStarted", filePath);
            progressText.text = qsTr("%1/%2 MB").arg(0).arg(downloadComp.megabytes(bytesTotal));
            // 10 is beyond the end of the bar, so the bar is full until the first progress.
            progress.value = 10;
        }
        function onDownloadProgress(filePath, bytesReceived, bytesTotal) {
            progressText.text = qsTr("<font color='%1'>%2</font><font color='%3'>/%4 MB</font>")
                .arg(Theme.titleText).arg(downloadComp.megabytes(bytesReceived))
                .arg(Theme.text).arg(downloadComp.megabytes(bytesTotal));
            progress.value = bytesReceived / bytesTotal;
        }
        function onDownloadFinished(filePath) {
            console.log("onDownloadFinished", filePath);
            downloadComp.downloadFinished = true;
        }
    }

    PageTitle {
        id: title
        objectName: "title"

        text: downloadComp.downloadFinished ? qsTr("下载完成") : qsTr("正在下载")
        fading: !downloadComp.downloadFinished
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

    PageText {
        id: progressText
        objectName: "progressText"

        anchors {
            top: progress.bottom
            topMargin: 6
            right: progress.right
        }
        textFormat: Text.StyledText
        horizontalAlignment: Text.AlignRight

        // The text without its colour tags.
        Accessible.name: text.replace(/<[^>]*>/g, "")
    }

    UpdateLog {
        id: log
        objectName: "log"

        anchors {
            top: progressText.bottom
            topMargin: 14
            left: progress.left
            right: progress.right
            bottom: installButton.top
            bottomMargin: 20
        }
        color: "transparent"
        border.color: Theme.outline
    }

    GradiantBtn {
        id: installButton
        objectName: "installButton"

        anchors {
            left: progress.left
            right: progress.right
            bottom: parent.bottom
            bottomMargin: 40
        }
        text: qsTr("安装")
        enabled: downloadComp.downloadFinished
        opacity: enabled ? 1 : 0.3

        onClicked: downloadComp.install()
    }
}
