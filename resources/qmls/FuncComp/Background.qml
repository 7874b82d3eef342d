import QtQuick 2.15
import "../Theme"

// The frame of the login window, with a title bar that moves the window and a close button.
Rectangle {
    id: background

    property real titleBarHeight: 32

    function close() {
        view.close();
        Qt.quit();
    }

    width: 340
    height: 642
    color: Theme.window
    border.color: Theme.frame
    border.width: 2

    Item {
        id: titleBar
        objectName: "titleBar"

        width: parent.width
        height: background.titleBarHeight

        MouseArea {
            property real pressX
            property real pressY

            anchors {
                top: parent.top
                bottom: parent.bottom
                left: parent.left
                right: closeButton.left
            }
            cursorShape: Qt.PointingHandCursor

            onPressed: {
                pressX = mouseX;
                pressY = mouseY;
            }
            // Compares with the position of the press, because this area moves with the window.
            onPositionChanged: {
                // Converts to window coordinates, because the window may show its content at a reduced size.
                const from = mapToItem(null, pressX, pressY);
                const to = mapToItem(null, mouseX, mouseY);
                view.x += to.x - from.x;
                view.y += to.y - from.y;
            }
        }

        Image {
            id: closeButton
            objectName: "closeButton"

            anchors {
                top: parent.top
                right: parent.right
                margins: 10
            }
            source: closeArea.containsMouse ? "qrc:/NelvoPlugin/qmls/images/close_hover.png"
                                            : "qrc:/NelvoPlugin/qmls/images/close.png"

            MouseArea {
                id: closeArea

                anchors.fill: parent
                hoverEnabled: true

                onClicked: background.close()
            }

            KeyArea {
                frameMargin: 3
                Accessible.name: qsTr("关闭")

                onActivated: background.close()
            }
        }
    }
}
