import QtQuick 2.15
import "../Theme"

// What the updater has to say, line after line. It shows once there is something in it.
RichTextPanel {
    id: log

    function append(message) {
        text += asItIs(message) + "<br/>";
    }

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
