import QtQuick 2.15

// The dialog that offers the models of the enterprise to the host.
Item {
    id: bimDialog

    property bool isDialogShow: frimPanel.visible

    // The host hears of the opening and may shut the plug-in down then.
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

    // As large as its parent, and not anchored to it: its position is set from outside. While the dialog is
    // closed there is no parent.
    width: parent ? parent.width : 0
    height: parent ? parent.height : 0
    // The panel shows on its own.
    visible: false

    onIsDialogShowChanged: {
        // The host may have shut the plug-in down while the panel was open.
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
