import QtQuick 2.15
import QtQuick.Controls 2.15

// The editor's scene. The plug-in's dialog opens in front of it.
Rectangle {
    width: 960
    height: 640
    color: "#20222e"

    Row {
        anchors {
            top: parent.top
            right: parent.right
            margins: 16
        }
        spacing: 8

        Button {
            text: "BIM models"
            enabled: host.signedIn
            onClicked: host.openBimDialog()
        }

        Button {
            text: "Drawings"
            enabled: host.signedIn
            onClicked: host.openDwgDialog()
        }
    }

    Text {
        objectName: "chosenText"

        anchors {
            bottom: parent.bottom
            right: parent.right
            margins: 16
        }
        text: host.chosen
        color: "white"
    }

    // The plug-in publishes pdsMgr in this context. bimProjList contains the models that the dialog shows.
    Connections {
        target: pdsMgr

        function onBimProjListChanged() {
            host.reportModels(pdsMgr.bimProjList.map(model => model.name));
        }
    }

    // The parent of the plug-in's dialog, which opens in its top left corner. The position must be 0, 0.
    Item {
        objectName: "dialogPlace"

        anchors.fill: parent
    }
}
