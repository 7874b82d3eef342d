import QtQuick 2.15
import QtTest 1.15

// The common part of the dialog tests. A test fails on any warning.
TestCase {
    id: bimTest

    // The host's item, in which the dialog opens, and the dialog's root item.
    property Item hostItem: null
    property Item dialog: null
    property var panel: null

    when: windowShown

    function init() {
        warningLog.start();
        editConext.isMainProject = true;
        bimControl.importAllowed = true;
        orgModel.load([{ id: "root", name: "集团", canSelect: false, children: [
            { id: "dept-1", name: "一部", canSelect: true, children: [
                { id: "dept-1-1", name: "一部一组", canSelect: true, children: [] }] },
            { id: "dept-2", name: "二部", canSelect: false, children: [] }] }]);
        pdsMgr.reset();
        callLog.clear();
        mouseMove(parent, 799, 699);
    }

    function cleanup() {
        if (dialog) {
            panel.close();
            panel = null;
            dialog.destroy();
            dialog = null;
        }
        if (hostItem) {
            hostItem.destroy();
            hostItem = null;
        }
        wait(0);
        compare(warningLog.finish(), []);
    }

    function create() {
        hostItem = createItem(40, 30, 600, 600);
        const component = Qt.createComponent("qrc:/NelvoPlugin/qmls/BimDialog/BimDialogControl.qml");
        compare(component.errorString(), "");
        dialog = component.createObject(null);
        panel = findChild(dialog, "frimPanel");
        compare(callLog.calls, []);
    }

    function createItem(x, y, width, height) {
        const item = Qt.createQmlObject("import QtQuick 2.15; Item {}", bimTest.parent);
        item.x = x;
        item.y = y;
        item.width = width;
        item.height = height;
        return item;
    }

    // Opens the dialog like the host: sets its visual parent and its position, then calls its function.
    function open(kind) {
        dialog.parent = hostItem;
        dialog.x = 0;
        dialog.y = 0;
        dialog[kind === "DWG" ? "openDWGBimDialog" : "openBimDialog"]();
        tryCompare(panel, "visible", true);
    }

    function createAndOpen(projects) {
        create();
        open("BIM");
        pdsMgr.deliver(projects || threeModels());
        waitForRows(pdsMgr.bimProjList.length);
        callLog.clear();
    }

    function model(number, name) {
        return { deptId: "dept-1", guid: "guid-" + number, name: name, ppid: number, size: 1, profession: 1,
                 profImg: picture("profession_1.png"), profTipText: "土建预算" };
    }

    function drawing(number, name) {
        return { deptId: "dept-1", guid: "dwg-" + number, name: name, ppid: number, profession: 1,
                 profImg: "", profTipText: "DWG" };
    }

    function threeModels() {
        return [model(1, "Tower A"), model(2, "地下车库"), model(3, "tower b")];
    }

    function item(objectName) {
        return findChild(panel.contentItem, objectName);
    }

    function view() {
        return item("searchView");
    }

    function waitForRows(count) {
        tryVerify(() => view().count === count);
        tryVerify(() => count === 0 || row(0));
    }

    function row(index) {
        const loader = view().itemAtIndex(index);
        return loader ? loader.item : null;
    }

    function inRow(index, objectName) {
        return findChild(row(index), objectName);
    }

    function rowNames() {
        const names = [];
        for (let i = 0; i < view().count; ++i)
            names.push(inRow(i, "nameText").text);
        return names;
    }

    function click(item) {
        mouseClick(item, item.width / 2, item.height / 2);
    }

    function type(text) {
        for (const character of text)
            keyClick(character);
    }

    // Runs `act`, which causes one call of the function `name`. Compares the result of `seen` during that call.
    function compareDuring(name, seen, expected, act) {
        const found = [];
        const look = called => {
            if (called === name)
                found.push(seen());
        };
        callLog.called.connect(look);
        act();
        callLog.called.disconnect(look);
        compare(found, [expected]);
    }

    function names(calls) {
        return calls.map(call => call[0]);
    }

    function picture(name) {
        return "qrc:/NelvoPlugin/qmls/images/" + name;
    }
}
