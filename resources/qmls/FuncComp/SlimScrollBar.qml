import QtQuick 2.15
import QtQuick.Controls 2.15
import "../Theme"

// A scroll bar that is visible only if the content can be scrolled.
ScrollBar {
    padding: 0
    visible: size < 1.0
    contentItem: Rectangle {
        implicitWidth: 4
        radius: 2
        color: Theme.scrollHandle
        opacity: 0.2
    }
    background: Rectangle {
        radius: 2
        color: Theme.scrollTrack
    }
}
