import QtQuick 2.15
import QtTest 1.15

// What the tests of the pages share. A test fails on any warning that it does not take from the log itself.
TestCase {
    id: pageTest

    // Root of the pages, after openWindow().
    property Item loginWindow: null
    // What happens during a call of the pages into loginCtrl, by the name of the called function; once each.
    property var during: ({})

    when: windowShown

    function init() {
        warningLog.start();
        loginCtrl.reset();
        updater.reset();
    }

    function cleanup() {
        during = {};
        if (loginWindow) {
            loginWindow.destroy();
            loginWindow = null;
            wait(0);
        }
        compare(warningLog.finish(), []);
    }

    function openWindow() {
        const component = Qt.createComponent("qrc:/NelvoPlugin/qmls/Main.qml");
        compare(component.errorString(), "");
        loginWindow = component.createObject(pageTest.parent);
        tryCompare(item("loginComp"), "activeFocus", true);
    }

    function openPage(key) {
        openWindow();
        item("contentLoader").source = loginWindow.compList[key];
    }

    function item(objectName) {
        return findChild(loginWindow, objectName);
    }

    function type(text) {
        for (const character of text)
            keyClick(character);
    }

    function account(user, passwd, addresses) {
        return { user: user, passwd: passwd, cimUrlList: addresses, pdsUrlList: [] };
    }

    function picture(name) {
        return "qrc:/NelvoPlugin/qmls/images/" + name;
    }

    Connections {
        target: loginCtrl

        function onCalled(name) {
            const happening = pageTest.during[name];
            if (happening) {
                pageTest.during[name] = null;
                happening();
            }
        }
    }
}
