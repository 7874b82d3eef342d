import QtQuick 2.15
import QtQuick.Controls 2.15
import "../FuncComp"
import "../Theme"

// The page that chooses an enterprise.
Item {
    id: applistComp
    objectName: "applistComp"

    // When the host shuts down, `loginCtrl` becomes null before the window is deleted.
    readonly property var appList: loginCtrl ? loginCtrl.appList : []
    property int selIndex1: -1
    property string appID1: ""
    property string appSecret1: ""
    property string appName1: ""
    property string appType1: ""
    // True while the enterprise is being entered. Events are processed meanwhile; none of them may enter it
    // again or replace this page.
    property bool waiting: false

    // A missing field is an empty string.
    function textOf(value) {
        return value === undefined || value === null ? "" : String(value);
    }

    // Converts both values before it sets any property, so that the entered enterprise is always the marked
    // one.
    function select(index) {
        const entry = appList[index];
        const id = textOf(entry.enterpriseId);
        const name = textOf(entry.enterpriseName);
        selIndex1 = index;
        appID1 = id;
        appName1 = name;
    }

    // onLogin returns no result, so the next page follows in any case.
    function confirm() {
        if (waiting)
            return;

        waiting = true;
        loginCtrl.onLogin(root.cimServer, appID1, appName1);
        waiting = false;
        // The host may have shut down meanwhile, or another page may have been requested.
        if (loginCtrl && contentLoader.item === applistComp)
            root.replacePage("ValidComp");
    }

    // A single enterprise needs no choice. The page may still be loading, so confirm runs later.
    onAppListChanged: {
        if (appList.length === 1) {
            select(0);
            Qt.callLater(confirm);
        }
    }

    Rectangle {
        id: panel
        objectName: "panel"

        anchors {
            left: parent.left
            right: parent.right
            leftMargin: 26
            rightMargin: 26
        }
        height: 252
        color: Theme.panel

        PageText {
            id: title

            x: 15
            y: 10
            height: 30
            text: qsTr("选择企业:")
            verticalAlignment: Text.AlignVCenter
        }

        Image {
            id: foldImage
            objectName: "foldImage"

            property bool open: true

            anchors {
                top: parent.top
                right: parent.right
                margins: 15
            }
            source: open ? "qrc:/NelvoPlugin/qmls/images/bar_ic_zhankai.png"
                         : "qrc:/NelvoPlugin/qmls/images/bar_ic_shouqi.png"

            MouseArea {
                anchors.fill: parent

                onClicked: foldImage.open = !foldImage.open
            }

            KeyArea {
                enabled: !applistComp.waiting
                frameMargin: 3
                Accessible.name: title.text
                Accessible.description: foldImage.open ? qsTr("折叠") : qsTr("展开")

                onActivated: foldImage.open = !foldImage.open
            }
        }

        Rectangle {
            id: line

            anchors {
                top: title.bottom
                topMargin: 6
            }
            x: 15
            width: parent.width - 30
            height: 1
            color: Theme.line
        }

        ListView {
            id: companyList
            objectName: "companyList"

            anchors {
                top: line.bottom
                topMargin: 6
                left: line.left
                right: parent.right
                rightMargin: 5
                bottom: parent.bottom
                bottomMargin: 5
            }
            visible: foldImage.open
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            snapMode: ListView.SnapToItem
            model: applistComp.appList
            // Qt logs a warning if this becomes false while a row has the focus.
            activeFocusOnTab: count > 0 || activeFocus

            Accessible.role: Accessible.List
            Accessible.name: title.text

            ScrollBar.vertical: SlimScrollBar {}

            delegate: FocusScope {
                id: row
                objectName: "companyRow"

                readonly property bool selected: applistComp.selIndex1 === index

                width: line.width
                height: 40

                Rectangle {
                    objectName: "companyFace"

                    y: 6
                    width: parent.width
                    height: 34
                    color: rowArea.containsMouse || row.selected ? Theme.panelHighlight : Theme.panel

                    PageText {
                        anchors {
                            left: parent.left
                            leftMargin: 10
                            right: tick.left
                            rightMargin: 10
                            verticalCenter: parent.verticalCenter
                        }
                        text: applistComp.textOf(modelData.enterpriseName)
                        elide: Text.ElideRight
                        font.pixelSize: 13
                        color: row.selected ? Theme.chosenText : Theme.softText
                        Accessible.ignored: true
                    }

                    Image {
                        id: tick
                        objectName: "tick"

                        anchors {
                            right: parent.right
                            rightMargin: 10
                            verticalCenter: parent.verticalCenter
                        }
                        visible: row.selected
                        source: "qrc:/NelvoPlugin/qmls/images/logIn_ic_xuanzhong.png"
                    }

                    MouseArea {
                        id: rowArea

                        anchors.fill: parent
                        hoverEnabled: true

                        onClicked: applistComp.select(index)
                    }

                    // The Tab key stops only at the list; the arrow keys go from row to row.
                    KeyArea {
                        focus: true
                        activeFocusOnTab: false
                        enabled: !applistComp.waiting
                        Accessible.role: Accessible.ListItem
                        Accessible.name: applistComp.textOf(modelData.enterpriseName)
                        Accessible.selectable: true
                        Accessible.selected: row.selected

                        onActivated: applistComp.select(index)
                    }
                }
            }
        }
    }

    // No code shows an error here.
    ErrorItem {
        anchors {
            left: panel.left
            right: panel.right
            bottom: parent.bottom
            bottomMargin: 76
        }
    }

    GradiantBtn {
        objectName: "confirmButton"

        anchors {
            left: panel.left
            right: panel.right
            bottom: parent.bottom
            bottomMargin: 40
        }
        text: qsTr("确定")
        mouseEnabled: applistComp.selIndex1 !== -1

        onClicked: applistComp.confirm()
    }

    MouseArea {
        anchors.fill: parent
        visible: applistComp.waiting
        hoverEnabled: true
        cursorShape: Qt.BusyCursor
    }
}
