pragma Singleton
import QtQuick 2.15

// Colours and fonts of all pages.
QtObject {
    readonly property string fontFamily: "微软雅黑"
    readonly property int textSize: 14
    readonly property int smallTextSize: 12

    readonly property color text: "#ffffff"
    readonly property color softText: "#dddddd"
    readonly property color hintText: "#8b8fa6"
    readonly property color titleText: "#50bcd8"
    readonly property color chosenText: "#21a7e9"
    readonly property color quietText: "#2996b3"
    readonly property color errorText: "#1473e6"
    readonly property color selectedText: "lightblue"
    readonly property color textSelection: "#255187"

    readonly property color window: "#272937"
    readonly property color frame: "#7f7e8c"
    readonly property color panel: "#353749"
    readonly property color panelHighlight: "#2d2f41"
    readonly property color textPanel: "#2f3243"
    readonly property color line: "#4a4b5c"
    readonly property color outline: "gray"
    readonly property color scrollHandle: "#ffffff"
    readonly property color scrollTrack: "#535353"

    readonly property color field: "#414458"
    readonly property color fieldHighlight: "#313343"
    readonly property color disabledField: "gray"

    readonly property color gradientStart: "#2997b4"
    readonly property color gradientMid: "#277ca3"
    readonly property color gradientStop: "#255187"
    readonly property color glow: "#8397ff"

    // The colours of pages in the host's scene, which uses greys.
    readonly property color sceneText: "#f0f0f0"
    readonly property color tree: "#272727"
    readonly property color treeHighlight: "#2a2a2a"
    readonly property color treeLine: "#3e3e3e"
    readonly property color deviceFace: "#dddddd"
    readonly property color deviceText: "#535353"
    readonly property color deviceBorder: "#636363"
}
