import QtQuick 2.15
import QtQuick.Controls 2.15

// A scroll bar that is there only where there is something to scroll.
ScrollBar {
    width: 4
    padding: 0
    visible: size < 1.0
    contentItem: Rectangle {
        implicitWidth: 4
        radius: 2
        color: "#ffffff"
        opacity: 0.2
    }
    background: Rectangle {
        radius: 2
        color: "#535353"
    }
}
