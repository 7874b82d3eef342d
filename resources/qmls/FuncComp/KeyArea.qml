import QtQuick 2.15
import "../Theme"

// Makes an item usable by keyboard and assistive technology, like a MouseArea by mouse: the Tab key stops at it, and
// Space, Return and Enter activate it. Its default role is a button.
Item {
    id: keyArea

    // The distance of the outline from the area.
    property real frameMargin: 0
    property color frameColor: Theme.text
    // The row of a list that holds the area. When the area gets the focus, the list scrolls to this row and its
    // neighbours.
    property Item row: null
    property bool spaceHeld

    signal activated

    function revealRow() {
        let view = row.parent;
        while (view && view.contentY === undefined)
            view = view.parent;
        if (!view)
            return;
        const top = row.mapToItem(view.contentItem, 0, 0).y;
        const wanted = Math.max(top + 2 * row.height - view.height, Math.min(top - row.height, view.contentY));
        view.contentY = Math.max(view.originY, Math.min(view.originY + view.contentHeight - view.height, wanted));
    }

    function activateBy(event) {
        if (!event.isAutoRepeat)
            activated();
        // Qt resets `accepted` if another key press arrives during a blocking call. The page would then also handle
        // this press.
        event.accepted = true;
    }

    anchors.fill: parent
    activeFocusOnTab: enabled

    onActiveFocusChanged: {
        spaceHeld = false;
        if (activeFocus && row)
            revealRow();
    }

    Accessible.role: Accessible.Button
    Accessible.focusable: enabled
    // Assistive technology can also press a disabled item.
    Accessible.onPressAction: {
        if (enabled)
            activated();
    }

    // On release, as in Qt's buttons: the control that gets the focus by the activation must not get the release.
    Keys.onSpacePressed: {
        if (!event.isAutoRepeat)
            spaceHeld = true;
    }
    Keys.onReleased: {
        if (event.key !== Qt.Key_Space || !spaceHeld)
            return;
        spaceHeld = event.isAutoRepeat;
        activateBy(event);
    }
    Keys.onReturnPressed: activateBy(event)
    Keys.onEnterPressed: activateBy(event)

    // The mouse never gives the focus to this item.
    FocusFrame {
        anchors.margins: -keyArea.frameMargin
        visible: keyArea.activeFocus
        border.color: keyArea.frameColor
    }
}
