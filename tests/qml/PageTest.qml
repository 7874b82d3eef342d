import QtQuick 2.15
import QtTest 1.15

// The common part of the page tests. A test fails if the log contains a warning that the test has not taken.
TestCase {
    id: pageTest

    // The root item of the pages; openWindow() sets it.
    property Item loginWindow: null
    // Callbacks by function name: the page's next call of that function of loginCtrl runs the callback once.
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
