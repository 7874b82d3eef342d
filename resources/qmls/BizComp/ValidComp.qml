import QtQuick 2.15
import "../FuncComp"

// The page with a short progress bar at the end of the sign-in.
Item {
    id: validComp
    objectName: "validComp"

    // True while the host receives the session and perhaps loads data. No event may replace this page.
    property bool waiting: false

    Component.onCompleted: timer.start()

    ProgressItem {
        id: progress
        objectName: "progress"

        anchors {
            left: parent.left
            right: parent.right
            leftMargin: 26
            rightMargin: 26
        }
        Accessible.name: qsTr("正在登录")

        onValueChanged: {
            // Ten times 0.1 is slightly less than 1.
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
        // Never runs: no code changes the property.
        onTriggeredOnStartChanged: progress.value = 0.0
    }
}
