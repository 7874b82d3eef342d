import QtQuick 2.15
import QtGraphicalEffects 1.15
import QtQuick.Controls 2.15
import QtQuick.Templates 2.15
import QtQuick.Window 2.15

// A lower bound for a window: the first text, the first picture and the first rectangle of a process.
Rectangle {
    width: 340
    height: 642
    color: "white"

    Image {
        anchors.centerIn: parent
        source: "qrc:/bench/nelvo.png"
    }

    Text {
        text: "登录"
        font {
            family: "微软雅黑"
            pixelSize: 14
        }
    }
}
