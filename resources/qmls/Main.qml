import QtQuick 2.15
import PercentTools 1.0
import "./FuncComp"

// The login window: a fixed frame with the logo, and a loader that shows one content page after another.
Background {
    id: root

    property string logo: "qrc:/NelvoPlugin/qmls/images/nelvo.png"
    property string cimServer: ""
    property string pdsServer: ""
    property bool keep: false
    property var userList: []
    // Cached accounts with user, passwd, cimUrlList and pdsUrlList, set from outside once the window shows.
    property var userInfos

    readonly property var compList: ({
        "loginComp": "qrc:/NelvoPlugin/qmls/BizComp/LoginComp.qml",
        "AppListComp": "qrc:/NelvoPlugin/qmls/BizComp/ApplistComp.qml",
        "DownloadComp": "qrc:/NelvoPlugin/qmls/BizComp/DownloadComp.qml",
        "UpdateComp": "qrc:/NelvoPlugin/qmls/BizComp/UpdateComp.qml",
        "ValidComp": "qrc:/NelvoPlugin/qmls/BizComp/ValidComp.qml",
        "CoverComp": "qrc:/NelvoPlugin/qmls/BizComp/CoverComp.qml"
    })

    // A page that is inside a blocking call can't be replaced: Qt aborts when an object goes while one of
    // its handlers still runs. The page that needUpdate asks for then has to wait for the end of the call.
    property string postponedPage: ""

    // The one way from page to page, for the pages too.
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
        focus: true
        source: root.compList["loginComp"]

        onLoaded: item.forceActiveFocus()
    }

    Connections {
        target: contentLoader.item
        // Only the pages with a blocking call have it.
        ignoreUnknownSignals: true

        function onWaitingChanged() {
            if (root.postponedPage !== "")
                root.replacePage(root.postponedPage);
        }
    }

    Connections {
        // The window also serves where no version check is to be had.
        target: typeof updater === "undefined" ? null : updater

        function onNeedUpdate(need) {
            root.replacePage(need ? "UpdateComp" : "ValidComp");
        }
    }
}
