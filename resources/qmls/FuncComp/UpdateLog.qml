import QtQuick 2.15
import "../Theme"

// The messages of the updater, one per line. Visible if there are messages.
RichTextPanel {
    id: log

    function append(message) {
        text += asItIs(message) + "<br/>";
    }

    name: qsTr("更新日志")
    visible: text !== ""
    textSize: Theme.smallTextSize
    followsEnd: true

    Connections {
        target: updater

        function onReadyUpdateInfo(info) {
            log.append(info);
        }
        function onReadyUpdateError(error) {
            log.append(error);
        }
    }
}
