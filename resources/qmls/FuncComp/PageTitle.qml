import QtQuick 2.15
import "../Theme"

// The title of an update page, below the logo. It can fade in and out to show activity.
PageText {
    id: title

    property bool fading: false

    anchors {
        top: parent.top
        topMargin: -80
        horizontalCenter: parent.horizontalCenter
    }
    color: Theme.titleText

    Accessible.role: Accessible.Heading

    SequentialAnimation {
        loops: Animation.Infinite
        running: title.fading

        onStopped: title.opacity = 1

        NumberAnimation {
            target: title
            property: "opacity"
            to: 0
            duration: 500
        }
        NumberAnimation {
            target: title
            property: "opacity"
            to: 1
            duration: 500
        }
    }
}
