import QtQuick 2.15
import QtQuick.Controls 1.4
import QtQuick.Controls.Styles 1.4
import "../Config"

// A tree without a header and without branch indicators: the delegate draws the whole row, including the
// indentation. The delegate reads the data of its row as `styleData.value`.
TreeView {
    id: tree

    property real treeStyleHeight: 24
    property color treeBackColor: EConfig.eDialogBackground
    // The name of the model's role that contains the data of a row.
    property string valueRole: "nodeData"

    headerVisible: false
    frameVisible: false
    alternatingRowColors: false
    selectionMode: SelectionMode.NoSelection
    horizontalScrollBarPolicy: Qt.ScrollBarAlwaysOff

    TableViewColumn {
        role: tree.valueRole
        width: tree.width
        resizable: false
    }

    rowDelegate: Rectangle {
        height: tree.treeStyleHeight
        color: tree.treeBackColor
    }

    style: TreeViewStyle {
        indentation: 0
        branchDelegate: null
        backgroundColor: tree.treeBackColor
        padding {
            left: 0
            top: 0
            right: 0
            bottom: 0
        }
        frame: null
        corner: null
        incrementControl: null
        decrementControl: null
        handleOverlap: 0
        scrollBarBackground: Rectangle {
            implicitWidth: 8
            implicitHeight: 8
            color: tree.treeBackColor
        }
        handle: Item {
            implicitWidth: 8
            implicitHeight: 8

            Rectangle {
                anchors.fill: parent
                anchors.margins: 2
                radius: 2
                color: styleData.pressed || styleData.hovered ? EConfig.eAccent : EConfig.eScrollBar
            }
        }
    }
}
