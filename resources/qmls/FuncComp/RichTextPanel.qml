import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Templates 2.15 as T
import "../Theme"

// A panel of rich text that the user can read, select and scroll.
Rectangle {
    id: panel

    // The text as it was set. The `text` of the editor would be a whole HTML document.
    property string text: ""
    property int textSize: Theme.textSize
    // The panel's name for assistive technology.
    property string name: ""
    // True if the panel scrolls to appended text, like a log.
    property bool followsEnd: false

    // Converts plain text to rich text that shows it unchanged. A text from a service may contain tags, which
    // could load pictures.
    function asItIs(plainText) {
        return plainText.replace(/&/g, "&amp;").replace(/</g, "&lt;");
    }

    function scrollBy(distance) {
        flickable.contentY = Math.max(0, Math.min(flickable.contentY + distance,
                                                  flickable.contentHeight - flickable.height));
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

        T.TextArea {
            id: edit
            objectName: "edit"

            width: flickable.width
            height: Math.ceil(contentHeight)
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

            Accessible.name: panel.name

            Keys.onUpPressed: panel.scrollBy(-20)
            Keys.onDownPressed: panel.scrollBy(20)
            Keys.onPressed: {
                if (event.key === Qt.Key_PageUp || event.key === Qt.Key_PageDown) {
                    panel.scrollBy(event.key === Qt.Key_PageUp ? -flickable.height : flickable.height);
                    event.accepted = true;
                }
            }
        }
    }

    FocusFrame {
        control: edit
    }

    // The scroll bar is beside the text and does not cover it.
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
