import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../Config"

// A slim bar that is visible only if the content can be scrolled.
T.ScrollBar {
    id: bar

    implicitWidth: 12
    implicitHeight: 12
    padding: 3
    minimumSize: 0.08
    visible: size < 1

    contentItem: Rectangle {
        implicitWidth: 6
        implicitHeight: 6
        radius: 3
        color: bar.pressed || bar.hovered ? EConfig.eAccent : EConfig.eScrollBar
    }
}
