import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../Theme"

// An editable combo box with a picture. The user can type any text; the list only proposes entries. Based on the
// templates, because the parts of a style would be loaded and then replaced.
T.ComboBox {
    id: control

    property var dropList: []
    property alias outText: field.text
    property color textColor: Theme.text
    property color normalColor: Theme.field
    property color highlightColor: Theme.fieldHighlight
    property color selectColor: Theme.fieldHighlight
    property color disableColor: Theme.disabledField
    property string headImage
    // A relative name starts at the folder of the pages.
    property string arrowImage: "images/arrowDown.png"
    property string placeholderText
    property bool readonly: false

    // Any entry that contains the text matches. With an empty text the first entry matches.
    function selectFirstMatch() {
        currentIndex = -1;
        currentIndex = dropList.findIndex(entry => entry.includes(outText));
        // A list sets its highlight from the current entry only when it opens.
        if (down) {
            popup.close();
            popup.open();
        }
    }

    editable: true
    model: dropList
    rightPadding: 10
    font.family: Theme.fontFamily
    font.pixelSize: Theme.smallTextSize

    // While the list is closed, the page receives the keys first, because the box would consume Return and Enter
    // without using them. Reading `down` instead of `popup` avoids creating the list before it opens.
    Keys.forwardTo: down ? [] : [parent]

    Accessible.name: placeholderText

    // The user has chosen an entry by mouse or keyboard. Return in an open list without a highlighted entry
    // chooses nothing.
    onActivated: {
        if (index !== -1)
            outText = currentText;
    }

    delegate: T.ItemDelegate {
        id: entry

        width: control.width
        height: control.height
        leftPadding: 10
        rightPadding: 10
        text: modelData
        font: control.font
        highlighted: control.highlightedIndex === index

        contentItem: PageText {
            text: entry.text
            font: entry.font
            color: control.textColor
            elide: Text.ElideRight
            verticalAlignment: Text.AlignVCenter
            Accessible.ignored: true
        }
        background: Rectangle {
            color: entry.highlighted || entry.hovered ? control.highlightColor : control.normalColor
        }
    }

    indicator: Image {
        x: control.width - width - control.rightPadding
        y: (control.height - height) / 2
        width: 12
        height: 8
        source: control.arrowImage.includes(":") ? control.arrowImage
                                                 : Qt.resolvedUrl("../" + control.arrowImage)
    }

    contentItem: FocusScope {
        focus: true

        Item {
            id: header
            objectName: "header"

            width: control.headImage === "" ? 0 : control.height
            height: control.height

            Image {
                anchors.centerIn: parent
                width: 32
                height: 32
                source: control.headImage
            }

            MouseArea {
                anchors.fill: parent
            }
        }

        InputField {
            id: field
            objectName: "field"

            anchors {
                left: header.right
                right: parent.right
                rightMargin: 15
            }
            height: control.height
            leftPadding: control.headImage === "" ? 10 : 4
            focus: true
            readOnly: control.readonly
            placeholderText: control.placeholderText
            font: control.font
            color: control.textColor
            selectionColor: control.selectColor

            onActiveFocusChanged: {
                if (activeFocus)
                    selectAll();
            }
            onTextChanged: {
                if (!readOnly)
                    control.selectFirstMatch();
            }
        }
    }

    background: Rectangle {
        color: control.enabled ? control.normalColor : control.disableColor

        FocusFrame {
            control: field
        }
    }

    popup: T.Popup {
        y: control.height - 1
        width: control.width
        implicitHeight: contentHeight + topPadding + bottomPadding
        // With margins, Qt keeps a list that is longer than the window inside the window.
        topMargin: 2
        bottomMargin: 2
        padding: 2

        // Opening by mouse takes the focus from the field, in which the user continues to type.
        onAboutToShow: field.forceActiveFocus()

        contentItem: ListView {
            clip: true
            implicitHeight: contentHeight
            model: control.popup.visible ? control.delegateModel : null
            currentIndex: control.highlightedIndex
            highlightMoveDuration: 0
        }
        background: Rectangle {
            color: control.normalColor
            border.color: control.highlightColor
        }
    }
}
