import QtQuick 2.15
import QtTest 1.15
import "qrc:/NelvoPlugin/qmls/BimDialog"

// The choice of a department.
BimTest {
    id: orgTest

    name: "EProjOrgCheck"

    readonly property Item box: panel ? item("orgCheck") : null

    Component {
        id: plainBox

        EProjOrgCheck {}
    }

    // Its property hides the context's orgModel from the box.
    Component {
        id: boxOfAnotherTree

        EProjOrgCheck {
            property var orgModel: null
        }
    }

    function openBox(shownRows) {
        click(box);
        tryCompare(box.popup, "opened", true);
        tryVerify(() => deptRows().length === (shownRows || 4));
    }

    function tree() {
        return findChild(box.popup.contentItem, "orgTree");
    }

    // The visible rows, from top to bottom.
    function deptRows() {
        const rows = [];
        const collect = item => {
            if (!item.visible)
                return;
            if (item.objectName === "deptRow")
                rows.push(item);
            for (let i = 0; i < item.children.length; ++i)
                collect(item.children[i]);
        };
        collect(tree());
        const top = item => item.mapToItem(tree(), 0, 0).y;
        return rows.sort((one, other) => top(one) - top(other));
    }

    function deptNames() {
        return deptRows().map(row => row.dept.name);
    }

    function deptRow(name) {
        return deptRows().find(row => row.dept.name === name);
    }

    function test_defaults() {
        const plain = createTemporaryObject(plainBox, parent);
        compare(String(plain.fontColor), "#f0f0f0");
        compare(String(plain.backGroundColor), "#414458");
        compare(plain.fontSize, 14);
        compare([plain.deptID, plain.deptName], ["", "所有工程"]);
        compare(plain.font.family, "微软雅黑");
        compare(plain.model, orgModel);
        compare([plain.width, plain.height], [200, 26]);
    }

    function test_closedBoxShowsTheDepartment() {
        createAndOpen();
        compare(String(box.background.color), "#414458");
        compare(box.contentItem.text, "所有工程");
        compare([box.contentItem.leftPadding, box.contentItem.rightPadding], [15, box.indicator.width + 20]);
        compare(box.contentItem.verticalAlignment, Text.AlignVCenter);
        compare(box.contentItem.elide, Text.ElideRight);
        compare(box.contentItem.font.pixelSize, 14);
        compare(box.contentItem.font.family, "微软雅黑");
        compare(String(box.contentItem.color), "#f0f0f0");
        box.font.family = "serif";
        compare(box.contentItem.font.family, "serif");
        box.fontSize = 11;
        box.fontColor = "#123456";
        box.backGroundColor = "#654321";
        compare(box.contentItem.font.pixelSize, 11);
        compare(String(box.contentItem.color), "#123456");
        compare(String(box.background.color), "#654321");
    }

    function test_indicatorTurnsIntoTheDownloadImageWhileOpen() {
        createAndOpen();
        compare(box.indicator.source, picture("ic_xiala.png"));
        compare(box.indicator.status, Image.Ready);
        compare(box.indicator.width, box.indicator.implicitWidth);
        compare(box.indicator.x + box.indicator.width, 310);
        fuzzyCompare(box.indicator.y + box.indicator.height / 2, 13, 0.5);
        openBox();
        compare(box.indicator.source, picture("pop_ic_bim_hover.png"));
        compare(box.indicator.status, Image.Ready);
        compare(box.indicator.x + box.indicator.width, 310);
        box.popup.close();
        tryCompare(box.indicator, "source", picture("ic_xiala.png"));
    }

    function test_clickAnywhereOpens_data() {
        return [{ tag: "left edge", x: 2 }, { tag: "name", x: 40 }, { tag: "indicator", x: 305 }];
    }

    function test_clickAnywhereOpens(data) {
        createAndOpen();
        mouseClick(box, data.x, 13);
        tryCompare(box.popup, "opened", true);
    }

    function test_popupStandsUnderTheBox() {
        createAndOpen();
        openBox();
        const popup = box.popup;
        compare([popup.x, popup.y, popup.width, popup.height, popup.padding], [0, 25, 320, 280, 1]);
        compare(String(popup.background.color), "#272727");
        const line = findChild(popup.contentItem, "line");
        compare(line.mapToItem(box, 0, 0), Qt.point(16, 26));
        compare([line.x, line.width, line.height], [15, popup.contentItem.width - 30, 1]);
        compare(String(line.color), "#3e3e3e");
        compare([tree().x, tree().y], [0, 6]);
        compare([tree().width, tree().height], [318, 272]);
        compare(tree().clip, true);
        compare(tree().treeStyleHeight, 32);
        compare(String(tree().treeBackColor), "#272727");
    }

    function test_treeIsExpandedWheneverItShows() {
        createAndOpen();
        openBox();
        compare(deptNames(), ["集团", "一部", "一部一组", "二部"]);
        // One call is for the created tree, one for the opened popup.
        compare(names(callLog.calls), ["expandAll", "expandAll"]);
        callLog.clear();
        orgModel.collapseAll();
        tryVerify(() => deptNames().length === 1);
        box.popup.close();
        tryCompare(box.popup, "visible", false);
        compare(callLog.calls, []);
        openBox();
        compare(names(callLog.calls), ["expandAll"]);
    }

    function test_treeThatGrowsLaterShowsAtTheNextOpening() {
        orgModel.load([]);
        createAndOpen();
        click(box);
        tryCompare(box.popup, "opened", true);
        compare(deptNames(), []);
        box.popup.close();
        orgModel.load([{ id: "root", name: "集团", canSelect: false, children: [
            { id: "a", name: "甲", canSelect: true, children: [] }] }]);
        openBox(2);
        compare(deptNames(), ["集团", "甲"]);
    }

    function test_boxOpensWithAnyTree_data() {
        return [{ tag: "none", tree: null }, { tag: "one that cannot be folded", tree: flatModel }];
    }

    function test_boxOpensWithAnyTree(data) {
        const other = createTemporaryObject(boxOfAnotherTree, parent, { orgModel: data.tree });
        click(other);
        tryCompare(other.popup, "opened", true);
        compare(findChild(other.popup.contentItem, "orgTree").model, data.tree);
        compare(names(callLog.calls), data.tree ? ["expandAll", "expandAll"] : []);
    }

    function test_layoutOfATreeRow() {
        createAndOpen();
        box.font.family = "serif";
        openBox();
        const rows = deptRows();
        for (let i = 0; i < rows.length; ++i) {
            compare([rows[i].width, rows[i].height], [320, 32]);
            compare(rows[i].mapToItem(tree(), 0, 0), Qt.point(0, 32 * i));
            const depth = [0, 1, 2, 1][i];
            const image = findChild(rows[i], "deptImage");
            const name = findChild(rows[i], "deptNameText");
            compare(image.x, 15 * (depth + 1));
            for (const part of [image, name, findChild(rows[i], "chosenImage")])
                fuzzyCompare(part.y + part.height / 2, 16, 0.5);
            compare(name.x, image.x + image.width + 10);
            compare([name.font.family, name.font.pixelSize], ["serif", depth === 0 ? 14 : 12]);
            compare(name.x + name.width, findChild(rows[i], "chosenImage").x - 10);
            compare(name.elide, Text.ElideRight);
            compare(String(name.color), "#dddddd");
            compare(name.text, rows[i].dept.name);
        }
    }

    function test_imageTellsWhetherADepartmentCanBeSelected() {
        createAndOpen();
        openBox();
        const image = name => findChild(deptRow(name), "deptImage");
        compare(image("集团").source, picture("ic_company.png"));
        compare(image("集团").status, Image.Ready);
        compare(image("一部").source, picture("ic_project.png"));
        compare(image("一部").status, Image.Ready);
        compare(image("二部").source, picture("ic_company.png"));
    }

    function test_rowUnderTheMouseIsHighlighted() {
        createAndOpen();
        openBox();
        const row = deptRow("一部");
        compare(String(row.color), "#272727");
        mouseMove(row, 100, 16);
        tryVerify(() => String(row.color) === "#2a2a2a");
        mouseMove(deptRow("二部"), 100, 16);
        tryVerify(() => String(row.color) === "#272727");
    }

    function test_clickOnARowChoosesIt_data() {
        return [
            { tag: "selectable", row: "一部一组", id: "dept-1-1" },
            { tag: "not selectable", row: "二部", id: "dept-2" },
            { tag: "root", row: "集团", id: "root" },
        ];
    }

    function test_clickOnARowChoosesIt(data) {
        createAndOpen();
        openBox();
        callLog.clear();
        mouseClick(deptRow(data.row), 120, 16);
        compare([box.deptID, box.deptName], [data.id, data.row]);
        compare(callLog.calls, [["searchBydeptId", data.id]]);
        tryCompare(box.popup, "visible", false);
        compare(box.contentItem.text, data.row);
        openBox();
        mouseMove(box, 5, 5);
        tryVerify(() => String(deptRow(data.row).color) === "#2a2a2a");
        for (const row of deptRows())
            compare(findChild(row, "chosenImage").visible, row.dept.name === data.row);
        const tick = findChild(deptRow(data.row), "chosenImage");
        compare(tick.status, Image.Ready);
        compare(tick.x + tick.width, 320 - 25);
    }

    function test_filterIsAskedForWhileTheTreeShows() {
        createAndOpen();
        openBox();
        compareDuring("searchBydeptId", () => box.popup.opened, true,
                      () => mouseClick(deptRow("一部"), 120, 16));
    }

    function test_choosingTheSameDepartmentAgainFiltersAgain() {
        createAndOpen();
        openBox();
        mouseClick(deptRow("一部"), 120, 16);
        openBox();
        callLog.clear();
        mouseClick(deptRow("一部"), 120, 16);
        compare(callLog.calls, [["searchBydeptId", "dept-1"]]);
    }

    function test_departmentsOfOneNameAllShowTheTick() {
        orgModel.load([{ id: "root", name: "集团", canSelect: false, children: [
            { id: "a", name: "同名", canSelect: true, children: [] },
            { id: "b", name: "同名", canSelect: true, children: [] }] }]);
        createAndOpen();
        openBox(3);
        mouseClick(deptRows()[1], 120, 16);
        openBox(3);
        mouseMove(box, 5, 5);
        compare(deptRows().map(row => findChild(row, "chosenImage").visible), [false, true, true]);
        tryVerify(() => String(deptRows()[1].color) === "#2a2a2a");
        compare(String(deptRows()[2].color), "#272727");
        compare(box.deptID, "a");
    }

    function test_escapeClosesTheTreeAndNotThePanel() {
        createAndOpen();
        openBox();
        keyClick(Qt.Key_Escape);
        tryCompare(box.popup, "visible", false);
        compare(panel.visible, true);
    }

    function test_pressBesideTheRowsLeavesTheTreeOpen() {
        createAndOpen();
        openBox();
        mouseClick(tree(), 100, 250);
        wait(0);
        compare(box.popup.visible, true);
        compare(box.deptID, "");
    }
}
