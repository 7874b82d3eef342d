import QtQuick 2.15

// Stands at the dialog's address and writes down what it is asked, and what it sees of the context.
Item {
    property var calls: []
    readonly property QtObject seenManager: pdsMgr
    readonly property QtObject seenModel: orgModel

    function openBimDialog() {
        calls.push("bim");
    }

    function openDWGBimDialog() {
        calls.push("dwg");
    }

    Item {
        objectName: "bimControlDialog"
    }
}
