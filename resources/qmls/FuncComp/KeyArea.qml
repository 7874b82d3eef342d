import QtQuick 2.15

// Makes an item usable by keyboard and by assistive technology, as a MouseArea does by mouse: a stop of the Tab key
// that Space, Return and Enter activate. Its default role is a button.
Item {
    id: keyArea

    // By how much the outline is larger than the area.
    property real frameMargin: 0

    signal activated

    function activateBy(event) {
        if (!event.isAutoRepeat)
            activated();
        // Qt resets it if another press arrives during a blocking call; the page would then handle this press too.
        event.accepted = true;
    }

    anchors.fill: parent
    activeFocusOnTab: enabled

    Accessible.role: Accessible.Button
    Accessible.focusable: enabled
    // Assistive technology can also press a disabled item.
    Accessible.onPressAction: {
        if (enabled)
            activated();
    }

    Keys.onSpacePressed: activateBy(event)
    Keys.onReturnPressed: activateBy(event)
    Keys.onEnterPressed: activateBy(event)

    // The mouse never gives the focus to this item.
    FocusFrame {
        anchors.margins: -keyArea.frameMargin
        visible: keyArea.activeFocus
    }
}
