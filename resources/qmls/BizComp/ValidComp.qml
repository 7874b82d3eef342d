import QtQuick 2.15
import "../FuncComp"

// The short progress that ends the sign-in.
Item {
    id: validComp
    objectName: "validComp"

    // The session is being handed to the host, which may load data meanwhile. No event may take this page away.
    property bool waiting: false

    Component.onCompleted: timer.start()

    ProgressItem {
        id: progress
        objectName: "progress"

        anchors {
            top: parent.top
            left: parent.left
            right: parent.right
            leftMargin: 26
            rightMargin: 26
        }
        height: 14

        onValueChanged: {
            // Ten times 0.1 stays just below 1.
            if (value + 0.01 >= to) {
                timer.stop();
                validComp.waiting = true;
                loginCtrl.onShowHome();
                validComp.waiting = false;
            }
        }
    }

    Timer {
        id: timer

        interval: 80
        repeat: true

        onTriggered: progress.value += 0.1
        // Never runs, since nothing changes that property.
        onTriggeredOnStartChanged: progress.value = 0.0
    }
}
