import QtQuick 2.15

// The background of a list. A list inside shows its scroll bar at this item's right edge.
Rectangle {
    property color eScrollBackGround: "transparent"

    color: eScrollBackGround
}
