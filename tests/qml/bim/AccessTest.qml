import QtQuick 2.15
import QtQuick.Window 2.15

// The dialog by keyboard alone, and as assistive technology finds it.
BimTest {
    name: "BimDialogAccess"

    function focused() {
        return panel.contentItem.Window.activeFocusItem;
    }

    function tabTo(name, description) {
        for (let i = 0; i < 300; ++i) {
            const found = focused().Accessible;
            if (found.name === name && (!description || found.description === description))
                return;
            keyClick(Qt.Key_Tab);
        }
        fail("no stop is called " + name);
    }

    function frames(item) {
        const own = item.objectName === "focusFrame" && item.visible ? [item] : [];
        return Array.from(item.children).reduce((found, child) => found.concat(frames(child)), own);
    }

    function test_tabFollowsTheReadingOrder() {
        createAndOpen([model(1, "Tower A"), model(2, "Tower B")]);
        compare(frames(panel.contentItem), []);
        tabTo("所有工程");
        const names = [];
        for (let i = 0; i < 8; ++i) {
            names.push([focused().Accessible.name, focused().Accessible.description]);
            keyClick(Qt.Key_Tab);
        }
        compare(names, [["所有工程", ""], ["搜索", ""], ["转换概要模型", "Tower A"], ["下载模型", "Tower A"],
                        ["转换概要模型", "Tower B"], ["下载模型", "Tower B"], ["性能优先", ""], ["完整度优先", ""]]);
        compare(focused().Accessible.name, "所有工程");
        keyClick(Qt.Key_Backtab, Qt.ShiftModifier);
        compare(focused().Accessible.name, "完整度优先");
        compare(frames(panel.contentItem).length, 1);
    }

    function test_keysPressTheButtonsOfARow_data() {
        return [{ tag: "Space", key: Qt.Key_Space }, { tag: "Return", key: Qt.Key_Return },
                { tag: "Enter", key: Qt.Key_Enter }];
    }

    function test_keysPressTheButtonsOfARow(data) {
        createAndOpen();
        tabTo("转换概要模型", "地下车库");
        keyClick(data.key);
        tabTo("下载模型", "tower b");
        keyClick(data.key);
        compare(callLog.calls, [["convertSimplyMode", "guid-2", false], ["checkBimProjValid", "guid-3", true],
                                ["downLoadBimProj", "guid-3"]]);
    }

    function test_hiddenButtonsAreNoStops() {
        createAndOpen();
        editConext.isMainProject = false;
        tabTo("搜索");
        keyClick(Qt.Key_Tab);
        compare([focused().Accessible.name, focused().Accessible.description], ["下载模型", "Tower A"]);
        keyClick(Qt.Key_Tab);
        compare([focused().Accessible.name, focused().Accessible.description], ["下载模型", "地下车库"]);
    }

    function test_listScrollsToTheRowThatHasTheFocus() {
        createAndOpen([1, 2, 3, 4, 5, 6, 7, 8, 9, 10].map(number => model(number, "model " + number)));
        tabTo("下载模型", "model 9");
        const top = row(8).mapToItem(view(), 0, 0).y;
        verify(top >= 0 && top + 40 <= view().height, top);
        tabTo("下载模型", "model 1");
        compare(view().contentY, 0);
    }

    function test_spaceOpensTheDepartments() {
        createAndOpen();
        tabTo("所有工程");
        keyClick(Qt.Key_Space);
        tryCompare(item("orgCheck").popup, "opened", true);
    }

    function test_controlsHaveRolesAndNames() {
        createAndOpen([model(1, "Tower A")]);
        bimControl.importAllowed = false;
        const scene = panel.contentItem.Window.window;
        const controls = ["Dialog ", "TitleBar 关联BIM模型", "ComboBox 所有工程", "EditableText 搜索",
                          "ListItem Tower A", "Button 转换概要模型", "Button 下载模型", "RadioButton 性能优先",
                          "RadioButton 完整度优先"];
        compare(setup.controls(scene), controls);
        verify(setup.press(scene, "Button 下载模型"));
        compare(setup.controls(scene), controls.concat("AlertMessage BIM工程不能重复导入"));
    }

    function test_departmentsHaveRolesAndNames() {
        createAndOpen();
        click(item("orgCheck"));
        tryCompare(item("orgCheck").popup, "opened", true);
        const scene = panel.contentItem.Window.window;
        tryVerify(() => setup.controls(scene).includes("TreeItem 一部一组"));
        verify(setup.press(scene, "TreeItem 一部一组"));
        compare(item("orgCheck").deptID, "dept-1-1");
    }

    function test_pressActionDoesWhatAClickDoes() {
        createAndOpen();
        verify(setup.press(panel.contentItem.Window.window, "Button 下载模型"));
        compare(names(callLog.calls), ["checkBimProjValid", "downLoadBimProj"]);
    }

    function test_mouseShowsNoOutline() {
        createAndOpen();
        click(inRow(0, "downloadButton"));
        click(item("completionCheck"));
        compare(frames(panel.contentItem), []);
    }
}
