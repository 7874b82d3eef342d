import QtQuick 2.15

// Stands at the dialog's address and writes down what it is asked, and what it sees of the context.
Item {
    property var calls: []
    property point placeWhenAsked
    readonly property QtObject seenManager: pdsMgr
    readonly property QtObject seenModel: orgModel

    function noteCall(name) {
        calls.push(name);
        placeWhenAsked = Qt.point(x, y);
    }

    function openBimDialog() {
        noteCall("bim");
    }

    function openDWGBimDialog() {
        noteCall("dwg");
    }

    Item {
        objectName: "bimControlDialog"
    }
}
