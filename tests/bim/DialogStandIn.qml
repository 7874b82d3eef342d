import QtQuick 2.15

// Replaces the dialog's page. Records the calls of its functions and the context properties that it finds.
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
