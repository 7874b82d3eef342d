import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import NelvoEditor 1.0
import "."

// Shows the result of a version check or the state of an update, and offers the next step. Otherwise hidden.
Rectangle {
    id: banner

    property QtObject desk

    readonly property int stage: desk.state
    readonly property bool moving: stage === UpdateDesk.Downloading || stage === UpdateDesk.Installing
        || stage === UpdateDesk.Restarting
    // The download is complete, and the updater verifies it. If the checksum is wrong, this remains true.
    readonly property bool verifying: stage === UpdateDesk.Downloading && desk.progress === 1

    function megabytes(bytes) {
        return (bytes / 1024 / 1024).toFixed(2);
    }

    readonly property string title: {
        switch (stage) {
        case UpdateDesk.NothingNewer:
            return "未发现可用的新版本";
        case UpdateDesk.Offered:
            return "发现新版本 " + desk.version;
        case UpdateDesk.Downloading:
            return (verifying ? "正在校验 " : "正在下载 ") + desk.version;
        case UpdateDesk.Failed:
            return "新版本 %1 未能下载".arg(desk.version);
        case UpdateDesk.Downloaded:
            return "新版本 %1 已下载".arg(desk.version);
        case UpdateDesk.Installing:
            return "正在安装 " + desk.version;
        case UpdateDesk.Restarting:
            return "即将重启到 " + desk.version;
        default:
            return "";
        }
    }

    readonly property string details: {
        switch (stage) {
        case UpdateDesk.NothingNewer:
            return "更新服务没有更高的版本，或暂时无法访问";
        case UpdateDesk.Offered:
            return desk.changeLog;
        case UpdateDesk.Downloading:
            return verifying ? "若长时间没有结果，请重新检查更新"
                             : "%1 / %2 MB".arg(megabytes(desk.bytesReceived)).arg(megabytes(desk.bytesTotal));
        case UpdateDesk.Failed:
            return desk.error;
        case UpdateDesk.Downloaded:
            return "安装完成后编辑器会自动重启，请先保存工作";
        case UpdateDesk.Installing:
            return "正在解压安装包";
        case UpdateDesk.Restarting:
            return desk.message;
        default:
            return "";
        }
    }

    visible: title !== ""
    implicitHeight: texts.implicitHeight + 24
    radius: Theme.radius
    color: "#28394f"
    border.color: stage === UpdateDesk.Failed ? Theme.bad : Theme.accent

    RowLayout {
        anchors {
            fill: parent
            leftMargin: Theme.spacing
            rightMargin: 12
        }
        spacing: 12

        Rectangle {
            Layout.alignment: Qt.AlignTop
            Layout.topMargin: 12
            implicitWidth: 20
            implicitHeight: 20
            radius: 10
            color: banner.border.color

            Text {
                anchors.centerIn: parent
                text: {
                    if (banner.stage === UpdateDesk.Failed)
                        return "!";
                    return banner.stage === UpdateDesk.NothingNewer ? "i" : "↑";
                }
                font.pixelSize: 14
                font.bold: true
                color: "#ffffff"
            }
        }

        ColumnLayout {
            id: texts

            Layout.fillWidth: true
            spacing: 6

            RowLayout {
                spacing: 12

                Text {
                    objectName: "updateTitle"

                    text: banner.title
                    textFormat: Text.PlainText
                    font.family: Theme.fontFamily
                    font.pixelSize: 14
                    color: Theme.text
                }

                Text {
                    objectName: "installedVersion"

                    Layout.fillWidth: true
                    text: banner.desk.installedVersion === "" ? "当前版本未知"
                                                              : "当前版本 " + banner.desk.installedVersion
                    textFormat: Text.PlainText
                    elide: Text.ElideRight
                    font.family: Theme.fontFamily
                    font.pixelSize: 12
                    color: Theme.faintText
                }
            }

            Text {
                objectName: "updateDetails"

                Layout.fillWidth: true
                text: banner.details
                // The service's notes contain tags for their line breaks.
                textFormat: banner.stage === UpdateDesk.Offered ? Text.StyledText : Text.PlainText
                wrapMode: Text.Wrap
                maximumLineCount: 4
                elide: Text.ElideRight
                font.family: Theme.fontFamily
                font.pixelSize: 12
                color: Theme.softText
            }

            Rectangle {
                Layout.fillWidth: true
                implicitHeight: 4
                radius: 2
                visible: banner.moving
                color: Theme.field

                Rectangle {
                    objectName: "updateProgress"

                    readonly property real value: banner.desk.progress

                    width: parent.width * value
                    height: parent.height
                    radius: 2
                    color: Theme.accent
                }
            }
        }

        BarButton {
            objectName: "downloadUpdateButton"
            compact: true
            accent: true
            visible: banner.stage === UpdateDesk.Offered || banner.stage === UpdateDesk.Failed
            text: banner.stage === UpdateDesk.Failed ? "重试" : "升级"
            onClicked: banner.desk.download()
        }

        BarButton {
            objectName: "installUpdateButton"
            compact: true
            accent: true
            visible: banner.stage === UpdateDesk.Downloaded
            text: "安装"
            onClicked: banner.desk.install()
        }

        BarButton {
            objectName: "dismissUpdateButton"
            compact: true
            visible: banner.stage === UpdateDesk.NothingNewer || banner.stage === UpdateDesk.Offered
                || banner.stage === UpdateDesk.Failed
            text: banner.stage === UpdateDesk.Offered ? "跳过" : "知道了"
            onClicked: banner.desk.dismiss()
        }
    }
}
