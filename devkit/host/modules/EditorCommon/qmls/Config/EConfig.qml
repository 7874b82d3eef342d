pragma Singleton
import QtQuick 2.15

// The colours and sizes of the whole editor.
QtObject {
    readonly property color eDialogBackground: "#2d2f41"
    readonly property color eDialogTitle: "#20222e"
    readonly property color eDialogBorder: "#3d4054"
    readonly property color eInputFieldText: "#dddddd"
    readonly property color eInputFieldHint: "#8b8fa6"
    readonly property color eInputFieldBackground: "#414458"
    readonly property color eBtnSelected: "#414458"
    readonly property color eBtnHovered: "#4b4f66"
    readonly property color eAccent: "#21a7e9"
    readonly property color eSelection: "#31506e"
    readonly property color eText: "#ffffff"
    readonly property color eToolTipBackground: "#191b25"
    readonly property color eScrollBar: "#565a72"

    readonly property string eFontFamily: "微软雅黑"
    readonly property int eRadius: 4
}
