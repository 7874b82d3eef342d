import QtQuick 2.15

// The dialog in which the user chooses a model of the enterprise.
Item {
    id: bimDialog

    property bool isDialogShow: frimPanel.visible
    property alias modelColumns: frimPanel.modelColumns

    // open() calls the host, which may shut down the plug-in.
    function openBimDialog() {
        frimPanel.clearselectText();
        frimPanel.open();
        if (pdsMgr)
            pdsMgr.getBimProj();
    }

    function openDWGBimDialog() {
        frimPanel.clearselectText();
        frimPanel.open();
        if (pdsMgr)
            pdsMgr.getDWGBimProj();
    }

    // Has the size of its parent but is not anchored to it, because the plug-in sets the position. A closed
    // dialog has no parent.
    width: parent ? parent.width : 0
    height: parent ? parent.height : 0
    // The panel is a popup, so it is visible independently of this item.
    visible: false

    onIsDialogShowChanged: {
        // The host may have shut down the plug-in while the panel was open.
        if (!pdsMgr)
            return;
        if (isDialogShow)
            pdsMgr.onOpenDialog();
        else
            pdsMgr.onCloseDialog();
    }

    PanelFirm {
        id: frimPanel
        objectName: "frimPanel"

        Item {
            objectName: "bimControlDialog"

            anchors.fill: parent
            enabled: parent.visible
        }
    }
}
