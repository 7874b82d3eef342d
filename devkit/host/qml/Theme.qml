pragma Singleton
import QtQuick 2.15

// The colours and sizes of the host's window, similar to those of the login window.
QtObject {
    readonly property color window: "#272937"
    readonly property color bar: "#20222e"
    readonly property color panel: "#2d2f41"
    readonly property color field: "#414458"
    readonly property color hover: "#33364a"
    readonly property color line: "#3d4054"
    readonly property color text: "#ffffff"
    readonly property color softText: "#c3c6d6"
    readonly property color faintText: "#8b8fa6"
    readonly property color accent: "#21a7e9"
    readonly property color gradientStart: "#2997b4"
    readonly property color gradientStop: "#255187"
    readonly property color selection: "#31506e"

    readonly property color good: "#4fc08d"
    readonly property color warning: "#e5b567"
    readonly property color bad: "#ee6a6a"

    readonly property string fontFamily: "微软雅黑"
    readonly property int spacing: 16
    readonly property int radius: 4
}
