import QtQuick 2.15
import QtQuick.Controls 2.15
import "."

// A placeholder for the editor's web view, in the requested size.
Popup {
    id: popup

    property QtObject webView

    anchors.centerIn: Overlay.overlay
    width: webView.rect.width
    height: webView.rect.height
    padding: 1
    modal: true

    Connections {
        target: popup.webView

        function onAsked() {
            popup.open();
        }
    }

    background: Rectangle {
        radius: Theme.radius
        color: Theme.window
        border.color: Theme.accent
    }

    contentItem: Panel {
        title: "网页视图"
        note: "%1 × %2".arg(popup.webView.rect.width).arg(popup.webView.rect.height)
        tools: BarButton {
            objectName: "webViewCloseButton"
            compact: true
            text: "关闭"
            onClicked: popup.close()
        }

        Column {
            anchors {
                left: parent.left
                right: parent.right
                margins: 2 * Theme.spacing
                verticalCenter: parent.verticalCenter
            }
            spacing: Theme.spacing

            Text {
                objectName: "webViewUrl"

                width: parent.width
                text: popup.webView.url
                textFormat: Text.PlainText
                wrapMode: Text.WrapAnywhere
                horizontalAlignment: Text.AlignHCenter
                font.family: "monospace"
                font.pixelSize: 12
                color: Theme.accent
            }

            Hint {
                anchors.horizontalCenter: parent.horizontalCenter
                text: "编辑器在此显示该网页\n参考宿主程序不含浏览器"
            }
        }
    }
}
