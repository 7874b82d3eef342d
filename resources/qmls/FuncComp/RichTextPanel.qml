import QtQuick 2.15
import QtQuick.Controls 2.15
import "../Theme"

// A panel of rich text to read, to select and to scroll up and down.
Rectangle {
    id: panel

    // As it was given: the editor would tell it as a whole document.
    property string text: ""
    property int textSize: Theme.textSize
    // Text that is added is brought into view, as in a log.
    property bool followsEnd: false

    // Plain text as rich text that shows it unchanged. What a service says may look like marks, which could fetch
    // pictures.
    function asItIs(plainText) {
        return plainText.replace(/&/g, "&amp;").replace(/</g, "&lt;");
    }

    color: Theme.textPanel

    Flickable {
        id: flickable
        objectName: "flickable"

        anchors {
            fill: parent
            margins: 10
            rightMargin: 14
        }
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        flickableDirection: Flickable.VerticalFlick
        contentWidth: width
        contentHeight: edit.height
        ScrollBar.vertical: scrollBar

        onContentHeightChanged: {
            if (panel.followsEnd)
                contentY = Math.max(0, contentHeight - height);
        }

        TextEdit {
            id: edit
            objectName: "edit"

            width: flickable.width
            text: panel.text
            readOnly: true
            selectByMouse: true
            textFormat: TextEdit.RichText
            wrapMode: TextEdit.Wrap
            color: Theme.text
            selectionColor: Theme.textSelection
            selectedTextColor: Theme.selectedText
            font.family: Theme.fontFamily
            renderType: TextEdit.NativeRendering
            font.pixelSize: panel.textSize
        }
    }

    // Beside the text and not over it.
    SlimScrollBar {
        id: scrollBar
        objectName: "scrollBar"

        anchors {
            top: flickable.top
            right: parent.right
            rightMargin: 5
            bottom: flickable.bottom
        }
    }
}
