import QtQuick 2.15
import QtQuick.Controls 2.15
import "."

ScrollBar {
    id: bar

    width: 10
    padding: 3
    visible: size < 1
    policy: ScrollBar.AlwaysOn
    contentItem: Rectangle {
        radius: 2
        color: bar.pressed || bar.hovered ? Theme.accent : Theme.field
    }
}
