import QtQuick 2.15
import PercentTools 1.0
import "./FuncComp"

// The login window: a fixed frame with the logo, and a loader that shows one page after another.
Background {
    id: root

    property string logo: "qrc:/NelvoPlugin/qmls/images/nelvo.png"
    property string cimServer: ""
    property string pdsServer: ""
    property bool keep: false
    property var userList: []
    // Cached accounts with user, passwd, cimUrlList and pdsUrlList. The actor sets them when the window is
    // visible.
    property var userInfos

    readonly property var compList: ({
        "loginComp": "qrc:/NelvoPlugin/qmls/BizComp/LoginComp.qml",
        "AppListComp": "qrc:/NelvoPlugin/qmls/BizComp/ApplistComp.qml",
        "DownloadComp": "qrc:/NelvoPlugin/qmls/BizComp/DownloadComp.qml",
        "UpdateComp": "qrc:/NelvoPlugin/qmls/BizComp/UpdateComp.qml",
        "ValidComp": "qrc:/NelvoPlugin/qmls/BizComp/ValidComp.qml",
        "CoverComp": "qrc:/NelvoPlugin/qmls/BizComp/CoverComp.qml"
    })

    // A page inside a blocking call cannot be replaced: Qt aborts when an object is destroyed while one of
    // its handlers runs. A page that needUpdate requests meanwhile appears after the call.
    property string postponedPage: ""

    // All changes of the page, also by the pages themselves, use this function.
    function replacePage(key) {
        if (contentLoader.item && contentLoader.item.waiting) {
            postponedPage = key;
        } else {
            postponedPage = "";
            contentLoader.source = compList[key];
        }
    }

    onUserInfosChanged: userList = userInfos.map(info => info.user || "")

    PercentTools {
        id: tools
    }

    Item {
        id: logoArea

        y: root.titleBarHeight
        width: parent.width
        height: 200

        Image {
            objectName: "logoImage"

            anchors.centerIn: parent
            width: 264
            height: 156
            source: root.logo
        }
    }

    Loader {
        id: contentLoader
        objectName: "contentLoader"

        anchors {
            top: logoArea.bottom
            topMargin: 60
            left: parent.left
            right: parent.right
            bottom: parent.bottom
        }
        source: root.compList["loginComp"]

        // The page has the focus, but the Tab key does not stop at it. Without these handlers, Qt would move the focus
        // to the window's first control.
        Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
        Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

        onLoaded: item.forceActiveFocus()
    }

    Connections {
        target: contentLoader.item
        // Only the pages with a blocking call have this signal.
        ignoreUnknownSignals: true

        function onWaitingChanged() {
            if (root.postponedPage !== "")
                root.replacePage(root.postponedPage);
        }
    }

    Connections {
        // The window also works without an updater.
        target: typeof updater === "undefined" ? null : updater

        function onNeedUpdate(need) {
            root.replacePage(need ? "UpdateComp" : "ValidComp");
        }
    }
}
