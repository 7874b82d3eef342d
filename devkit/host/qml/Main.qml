import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "."

// The host's window, visible while a user is signed in. Closing it ends the application.
ApplicationWindow {
    id: window
    objectName: "hostWindow"

    // The code that loads the window sets these properties.
    property QtObject editor
    property QtObject log
    property url webChannelPage

    width: 1280
    height: 880
    minimumWidth: 1080
    minimumHeight: 660
    visible: editor.signedIn
    title: "Nelvo Editor"
    color: Theme.window

    onClosing: Qt.quit()

    Connections {
        target: window.editor

        function onSessionChanged() {
            if (window.editor.signedIn) {
                window.raise();
                window.requestActivate();
            }
        }
    }

    header: Rectangle {
        height: 56
        color: Theme.bar

        RowLayout {
            anchors {
                fill: parent
                leftMargin: Theme.spacing
                rightMargin: Theme.spacing
            }
            spacing: 12

            Rectangle {
                implicitWidth: 28
                implicitHeight: 28
                radius: 6
                gradient: Gradient {
                    orientation: Gradient.Horizontal
                    GradientStop {
                        position: 0
                        color: Theme.gradientStart
                    }
                    GradientStop {
                        position: 1
                        color: Theme.gradientStop
                    }
                }

                Text {
                    anchors.centerIn: parent
                    text: "N"
                    font.pixelSize: 17
                    font.bold: true
                    color: Theme.text
                }
            }

            Text {
                text: "Nelvo Editor"
                font.family: Theme.fontFamily
                font.pixelSize: 17
                color: Theme.text
            }

            Rectangle {
                Layout.leftMargin: 8
                Layout.rightMargin: 8
                implicitWidth: 1
                implicitHeight: 24
                color: Theme.line
            }

            Text {
                objectName: "enterprise"

                Layout.fillWidth: true
                text: window.editor.enterprise
                textFormat: Text.PlainText
                elide: Text.ElideRight
                font.family: Theme.fontFamily
                font.pixelSize: 15
                color: Theme.accent
            }

            ProjectKindSwitch {
                desk: window.editor.models
            }

            BarButton {
                objectName: "bimButton"
                text: "BIM 模型"
                hint: "打开 BIM 模型对话框"
                enabled: window.editor.models.ready
                onClicked: window.editor.models.openBimDialog()
            }

            BarButton {
                objectName: "dwgButton"
                text: "DWG 图纸"
                hint: "打开 DWG 图纸对话框"
                enabled: window.editor.models.ready
                onClicked: window.editor.models.openDwgDialog()
            }

            BarButton {
                objectName: "webChannelButton"

                readonly property url page: window.webChannelPage

                text: "网页通道"
                hint: "在浏览器中打开 " + page
                enabled: String(page) !== ""
                onClicked: Qt.openUrlExternally(page)
            }

            BarButton {
                objectName: "checkUpdateButton"
                text: "检查更新"
                hint: "向更新服务查询是否有新版本"
                enabled: window.editor.updates.canCheck
                onClicked: window.editor.updates.check()
            }

            Rectangle {
                Layout.leftMargin: 8
                Layout.rightMargin: 8
                implicitWidth: 1
                implicitHeight: 24
                color: Theme.line
            }

            BarButton {
                objectName: "signInAgainButton"
                text: "重新登录"
                accent: true
                hint: "打开登录窗口；登录成功前保留当前会话"
                onClicked: window.editor.signInAgain()
            }

            BarButton {
                objectName: "signOutButton"
                text: "退出登录"
                hint: "清除当前会话并返回登录窗口"
                onClicked: window.editor.signOut()
            }
        }

        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: 1
            color: Theme.line
        }
    }

    ColumnLayout {
        anchors {
            fill: parent
            margins: Theme.spacing
        }
        spacing: 0

        NoticeBanner {
            Layout.fillWidth: true
            Layout.bottomMargin: 12
            visible: text !== ""
            text: window.editor.notice
            onSignInAgain: window.editor.signInAgain()
            onDismissed: window.editor.dismissNotice()
        }

        UpdateBanner {
            Layout.fillWidth: true
            Layout.bottomMargin: 12
            desk: window.editor.updates
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: 12

            OrgTreePanel {
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.preferredWidth: 260
                desk: window.editor.projects
            }

            ServerProjectPanel {
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.preferredWidth: 280
                desk: window.editor.projects
            }

            LocalProjectPanel {
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.preferredWidth: 300
                Layout.minimumWidth: 280
                desk: window.editor.projects
            }

            DetailsPanel {
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.preferredWidth: 340
                desk: window.editor.projects
                component: window.editor.component
            }
        }

        Splitter {
            id: splitter

            Layout.fillWidth: true
            lowerHeight: window.height * 0.3
            least: 160
            most: parent.height - 320
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.fillHeight: false
            Layout.preferredHeight: Math.max(splitter.least, Math.min(splitter.most, splitter.lowerHeight))
            spacing: 12

            SessionPanel {
                Layout.preferredWidth: 270
                Layout.fillHeight: true
                session: window.editor.session
            }

            ModelPanel {
                Layout.preferredWidth: 300
                Layout.fillHeight: true
                desk: window.editor.models
            }

            LogPanel {
                Layout.fillWidth: true
                Layout.fillHeight: true
                log: window.log
            }
        }
    }

    // The plug-in's dialogs appear over this item, below the bar.
    Item {
        anchors {
            fill: parent
            margins: Theme.spacing
        }

        Item {
            objectName: "scene"
            anchors.fill: parent
        }
    }

    WebViewPopup {
        webView: window.editor.webView
    }

    footer: Rectangle {
        height: 28
        color: Theme.bar

        Text {
            anchors {
                left: parent.left
                leftMargin: Theme.spacing
                verticalCenter: parent.verticalCenter
            }
            text: "插件 NelvoPlugin %1".arg(window.editor.pluginVersion)
            font.family: Theme.fontFamily
            font.pixelSize: 12
            color: Theme.faintText
        }

        Text {
            objectName: "activity"

            anchors {
                right: parent.right
                rightMargin: Theme.spacing
                verticalCenter: parent.verticalCenter
            }
            text: window.editor.projects.queue.activity
            font.family: Theme.fontFamily
            font.pixelSize: 12
            color: Theme.accent
        }
    }
}
