import QtQuick 2.15
import QtQuick.Controls 2.15
import NelvoEditor 1.0
import "."

// The log. A click selects a row, Shift and a click selects a range; Ctrl+C and the button copy the
// selection, or all shown rows if nothing is selected.
Panel {
    id: panel

    property var log

    readonly property var kindColors: ({
        "debug": Theme.faintText,
        "info": Theme.softText,
        "warning": Theme.warning,
        "critical": Theme.bad,
        "host": Theme.good,
        "observer": Theme.accent
    })

    function copy() {
        if (list.anchorRow === -1)
            log.copy(0, list.count - 1);
        else
            log.copy(Math.min(list.anchorRow, list.endRow), Math.max(list.anchorRow, list.endRow));
    }

    title: "运行日志"
    note: "%1 条".arg(list.count)

    tools: [
        Repeater {
            model: [
                { text: "全部", shown: LogFilter.Everything },
                { text: "插件回调", shown: LogFilter.ObserverCalls },
                { text: "警告与错误", shown: LogFilter.Problems }
            ]

            BarButton {
                objectName: "logFilter" + index
                compact: true
                text: modelData.text
                accent: panel.log.shown === modelData.shown
                onClicked: panel.log.shown = modelData.shown
            }
        },
        BarButton {
            objectName: "copyButton"
            compact: true
            text: "复制"
            hint: "复制所选行；未选择时复制显示的全部行"
            onClicked: panel.copy()
        }
    ]

    ListView {
        id: list
        objectName: "logList"

        property int anchorRow: -1
        property int endRow: -1
        // The newest row stays visible until the user scrolls up.
        property bool follow: true

        function select(row, extend) {
            if (!extend || anchorRow === -1)
                anchorRow = row;
            endRow = row;
            forceActiveFocus();
        }

        function isSelected(row) {
            return anchorRow !== -1 && row >= Math.min(anchorRow, endRow) && row <= Math.max(anchorRow, endRow);
        }

        function showNewest() {
            if (follow)
                positionViewAtEnd();
        }

        function deselect() {
            anchorRow = -1;
            endRow = -1;
        }

        anchors {
            fill: parent
            topMargin: 6
            bottomMargin: 6
        }
        clip: true
        activeFocusOnTab: true
        boundsBehavior: Flickable.StopAtBounds
        model: panel.log
        ScrollBar.vertical: SlimScrollBar {
            onPressedChanged: list.follow = !pressed && list.atYEnd
        }

        onMovementStarted: follow = false
        onMovementEnded: follow = atYEnd
        onCountChanged: Qt.callLater(showNewest)
        // The height of hidden rows is an estimate until they are laid out.
        onContentHeightChanged: Qt.callLater(showNewest)
        onHeightChanged: Qt.callLater(showNewest)
        Keys.onEscapePressed: deselect()
        Keys.onPressed: {
            if (event.matches(StandardKey.Copy)) {
                panel.copy();
                event.accepted = true;
            } else if (event.matches(StandardKey.SelectAll)) {
                anchorRow = 0;
                endRow = count - 1;
                event.accepted = true;
            }
        }

        Connections {
            target: panel.log

            // The removal changes the numbers of the remaining rows.
            function onRowsRemoved() {
                list.deselect();
            }
            function onShownChanged() {
                list.deselect();
                list.follow = true;
                Qt.callLater(list.showNewest);
            }
        }

        delegate: Rectangle {
            id: row

            readonly property color kindColor: panel.kindColors[model.kind]

            width: ListView.view.width
            height: message.height + 8
            color: list.isSelected(index) ? Theme.selection : rowArea.containsMouse ? Theme.hover : "transparent"

            Rectangle {
                width: 3
                height: parent.height - 2
                y: 1
                color: row.kindColor
                opacity: 0.8
            }

            Text {
                id: time

                x: Theme.spacing
                anchors.baseline: message.baseline
                text: model.time
                font.family: "monospace"
                font.pixelSize: 11
                color: Theme.faintText
            }

            Text {
                id: kind

                x: time.x + 92
                anchors.baseline: message.baseline
                text: model.kind
                font.family: Theme.fontFamily
                font.pixelSize: 12
                color: row.kindColor
            }

            Text {
                id: message
                objectName: "logText"

                anchors {
                    left: kind.left
                    leftMargin: 66
                    right: origin.left
                    rightMargin: 12
                }
                y: 4
                text: model.text
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                font.family: Theme.fontFamily
                font.pixelSize: 12
                color: model.kind === "debug" ? Theme.softText : Theme.text
            }

            Text {
                id: origin

                anchors {
                    right: parent.right
                    rightMargin: Theme.spacing
                    baseline: message.baseline
                }
                width: Math.min(implicitWidth, parent.width * 0.3)
                text: model.origin
                textFormat: Text.PlainText
                elide: Text.ElideLeft
                font.family: "monospace"
                font.pixelSize: 11
                color: Theme.faintText
            }

            MouseArea {
                id: rowArea

                anchors.fill: parent
                hoverEnabled: true
                onClicked: list.select(index, mouse.modifiers & Qt.ShiftModifier)
            }
        }

        Text {
            anchors.centerIn: parent
            visible: list.count === 0
            text: "没有可显示的日志"
            font.family: Theme.fontFamily
            font.pixelSize: 13
            color: Theme.faintText
        }
    }
}
