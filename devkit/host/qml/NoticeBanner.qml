import QtQuick 2.15
import QtQuick.Layouts 1.15
import "."

// An important notice above the other parts of the window, which stay usable.
Rectangle {
    id: banner

    property string text

    signal signInAgain
    signal dismissed

    implicitHeight: 44
    radius: Theme.radius
    color: "#5a3038"
    border.color: Theme.bad

    RowLayout {
        anchors {
            fill: parent
            leftMargin: Theme.spacing
            rightMargin: 12
        }
        spacing: 12

        Rectangle {
            implicitWidth: 20
            implicitHeight: 20
            radius: 10
            color: Theme.bad

            Text {
                anchors.centerIn: parent
                text: "!"
                font.pixelSize: 14
                font.bold: true
                color: "#ffffff"
            }
        }

        Text {
            objectName: "notice"

            Layout.fillWidth: true
            text: banner.text
            textFormat: Text.PlainText
            elide: Text.ElideRight
            font.family: Theme.fontFamily
            font.pixelSize: 14
            color: Theme.text
        }

        BarButton {
            objectName: "noticeSignInButton"
            compact: true
            accent: true
            text: "重新登录"
            onClicked: banner.signInAgain()
        }

        BarButton {
            objectName: "noticeDismissButton"
            compact: true
            text: "知道了"
            onClicked: banner.dismissed()
        }
    }
}
