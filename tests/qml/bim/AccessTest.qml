import QtQuick 2.15
import QtQuick.Window 2.15

// Use of the dialog with the keyboard only and through assistive technology.
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
        fail("the Tab key reaches no control with the name " + name);
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
        for (const radioButton of ["完整度优先", "性能优先"]) {
            compare(focused().Accessible.name, radioButton);
            compare(frames(panel.contentItem).map(frame => [frame.x, frame.y]), [[-3, -3]]);
            keyClick(Qt.Key_Backtab, Qt.ShiftModifier);
        }
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

    function test_outlineSurroundsTheButtonOfARow_data() {
        return [{ tag: "转换概要模型", button: "outlineButton" }, { tag: "下载模型", button: "downloadButton" }];
    }

    function test_outlineSurroundsTheButtonOfARow(data) {
        createAndOpen();
        tabTo(data.tag, "Tower A");
        const outline = frames(row(0))[0];
        const button = inRow(0, data.button);
        compare([outline.mapToItem(button, 0, 0), outline.width, outline.height],
                [Qt.point(0, 0), button.width, button.height]);
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
        for (const button of ["转换概要模型", "下载模型"]) {
            view().contentY = 0;
            // The next row is visible, too.
            tabTo(button, "model 7");
            compare(view().contentY, 8 * 40 - view().height);
            tabTo(button, "model 9");
            const top = row(8).mapToItem(view(), 0, 0).y;
            verify(top >= 0 && top + 40 <= view().height, top);
            tabTo(button, "model 10");
            compare(view().contentY, 10 * 40 - view().height);
            tabTo(button, "model 1");
            compare(view().contentY, 0);
        }
        // Only the second button exists.
        editConext.isMainProject = false;
        tabTo("下载模型", "model 9");
        verify(view().contentY > 0);
    }

    function openDepartments() {
        createAndOpen();
        tabTo("所有工程");
        keyClick(Qt.Key_Space);
        tryCompare(item("orgCheck").popup, "opened", true);
        tryVerify(() => setup.controls(panel.contentItem.Window.window).includes("TreeItem 二部"));
        callLog.clear();
    }

    function openManyDepartments() {
        createAndOpen();
        orgModel.load([{ id: "root", name: "集团", canSelect: false,
                         children: [1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25]
                             .map(number => ({ id: "d" + number, name: "部门 " + number, canSelect: true, children: [] })) }]);
        tabTo("所有工程");
        keyClick(Qt.Key_Space);
        tryCompare(item("orgCheck").popup, "opened", true);
        tryVerify(() => setup.controls(panel.contentItem.Window.window).includes("TreeItem 部门 1"));
    }

    function test_departmentIsChosenByKeyboard_data() {
        return test_keysPressTheButtonsOfARow_data();
    }

    function test_departmentIsChosenByKeyboard(data) {
        openDepartments();
        const names = [];
        for (let i = 0; i < 5; ++i) {
            keyClick(Qt.Key_Down);
            names.push(focused().Accessible.name);
            compare(frames(panel.contentItem.Window.window.contentItem).length, 1, names[i]);
        }
        // The last row keeps the focus.
        compare(names, ["集团", "一部", "一部一组", "二部", "二部"]);
        compare([focused().width, focused().height], [320 - 10, 32]);
        keyClick(Qt.Key_Up);
        compare(focused().Accessible.name, "一部一组");
        keyClick(data.key);
        compare([item("orgCheck").deptID, item("orgCheck").deptName], ["dept-1-1", "一部一组"]);
        compare(callLog.calls, [["searchBydeptId", "dept-1-1"]]);
        tryCompare(item("orgCheck").popup, "visible", false);
        compare(focused(), item("orgCheck"));
        compare(frames(panel.contentItem).length, 1);
        wait(0);
        compare(item("orgCheck").popup.visible, false);
    }

    function test_arrowKeysStartAtTheChosenDepartment() {
        openDepartments();
        item("orgCheck").deptID = "dept-1";
        keyClick(Qt.Key_Up);
        compare(focused().Accessible.name, "一部");
        verify(focused().Accessible.selectable && focused().Accessible.selected);
        keyClick(Qt.Key_Up);
        compare(focused().Accessible.name, "集团");
    }

    function test_departmentsForgetTheFocus_data() {
        return [{ tag: "Escape", key: Qt.Key_Escape }, { tag: "Return", key: Qt.Key_Return }];
    }

    function test_departmentsForgetTheFocus(data) {
        openDepartments();
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Down);
        keyClick(data.key);
        tryCompare(item("orgCheck").popup, "visible", false);
        item("orgCheck").clearSelect();
        callLog.clear();

        click(item("orgCheck"));
        tryCompare(item("orgCheck").popup, "opened", true);
        compare(frames(item("orgCheck").popup.contentItem), []);
        keyClick(Qt.Key_Return);
        compare([item("orgCheck").deptID, item("orgCheck").popup.visible], ["", true]);
        keyClick(Qt.Key_Down);
        compare(focused().Accessible.name, "集团");
    }

    function test_clickBesideTheDepartmentsReturnsTheFocus() {
        openDepartments();
        keyClick(Qt.Key_Down);
        mouseClick(panel.contentItem, 180, 430);
        tryCompare(item("orgCheck").popup, "visible", false);
        compare(focused(), item("orgCheck"));
    }

    function test_sideArrowsChangeNothingInTheTree() {
        openDepartments();
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Left);
        keyClick(Qt.Key_Right);
        keyClick(Qt.Key_Down);
        compare(focused().Accessible.name, "一部");
        keyClick(Qt.Key_Up);
        orgModel.collapseAll();
        const items = () => setup.controls(panel.contentItem.Window.window).filter(name => name.startsWith("TreeItem"));
        tryVerify(() => items().length === 1);
        const tree = findChild(item("orgCheck").popup.contentItem, "orgTree");
        keyClick(Qt.Key_Right);
        compare(tree.isExpanded(orgModel.index(0, 0)), false);
    }

    function test_arrowKeyFindsTheNeighbourOfARowThatWasScrolledAway() {
        openManyDepartments();
        const tree = findChild(item("orgCheck").popup.contentItem, "orgTree");
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Down);
        compare(focused().Accessible.name, "部门 2");
        tree.flickableItem.contentY = 600;
        waitForRendering(tree);
        keyClick(Qt.Key_Down);
        compare(focused().Accessible.name, "部门 3");
    }

    function test_treeScrollsToTheRowThatHasTheFocus() {
        openManyDepartments();
        const tree = findChild(item("orgCheck").popup.contentItem, "orgTree");
        for (const key of [Qt.Key_Down, Qt.Key_Up]) {
            for (let i = 0; i < 30; ++i) {
                keyClick(key);
                waitForRendering(tree);
                const top = focused().mapToItem(tree, 0, 0).y;
                verify(top >= 0 && top + 32 <= tree.height, focused().Accessible.name + " at " + top);
            }
            compare(focused().Accessible.name, key === Qt.Key_Down ? "部门 25" : "集团");
        }
    }

    function test_escapeAndTabCloseTheDepartments_data() {
        return [{ tag: "Escape", key: Qt.Key_Escape, then: "所有工程", outlines: 1 },
                { tag: "Escape at once", key: Qt.Key_Escape, atOnce: true, then: "所有工程", outlines: 1 },
                // The search box of the host has no outline.
                { tag: "Tab", key: Qt.Key_Tab, then: "搜索", outlines: 0 },
                { tag: "Shift+Tab", key: Qt.Key_Backtab, then: "完整度优先", outlines: 1 }];
    }

    function test_escapeAndTabCloseTheDepartments(data) {
        openDepartments();
        if (!data.atOnce)
            keyClick(Qt.Key_Down);
        keyClick(data.key);
        tryCompare(item("orgCheck").popup, "visible", false);
        compare(focused().Accessible.name, data.then);
        compare(frames(panel.contentItem).length, data.outlines);
        compare(callLog.calls, []);
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
        click(item("orgCheck"));
        tryCompare(item("orgCheck").popup, "opened", true);
        tryVerify(() => setup.controls(panel.contentItem.Window.window).includes("TreeItem 二部"));
        const tree = findChild(item("orgCheck").popup.contentItem, "orgTree");
        compare(frames(tree), []);
        mouseClick(tree, 100, 48);
        compare(item("orgCheck").deptName, "一部");
        tryCompare(item("orgCheck").popup, "visible", false);
        compare(frames(panel.contentItem), []);
    }
}
