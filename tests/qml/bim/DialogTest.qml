import QtQuick 2.15

// Opening, closing and placing the dialog.
BimTest {
    name: "BimDialog"

    function test_rootItemIsHiddenAndHoldsThePanelAndAnEmptyItem() {
        create();
        compare(dialog.visible, false);
        compare(dialog.isDialogShow, false);
        compare([dialog.width, dialog.height], [0, 0]);
        compare([panel.width, panel.height], [360, 444]);
        const inner = findChild(panel.contentItem, "bimControlDialog");
        compare(inner.enabled, false);
        open("BIM");
        compare(inner.enabled, true);
        compare([inner.width, inner.height], [360, 444]);
    }

    function test_rootItemIsAsLargeAsItsParent() {
        create();
        open("BIM");
        compare([dialog.width, dialog.height], [600, 600]);
        hostItem.width = 500;
        compare(dialog.width, 500);
        dialog.parent = null;
        compare([dialog.width, dialog.height], [0, 0]);
    }

    function test_openingTellsTheManagerAndThenFetches_data() {
        return [{ tag: "BIM", fetch: "getBimProj" }, { tag: "DWG", fetch: "getDWGBimProj" }];
    }

    function test_openingTellsTheManagerAndThenFetches(data) {
        create();
        open(data.tag);
        compare(callLog.calls, [["onOpenDialog"], [data.fetch]]);
        compare(dialog.isDialogShow, true);
    }

    function test_openingAnOpenDialogFetchesAgain() {
        create();
        open("BIM");
        open("DWG");
        compare(names(callLog.calls), ["onOpenDialog", "getBimProj", "getDWGBimProj"]);
    }

    function test_closeButtonClosesOnce() {
        createAndOpen();
        click(findChild(panel.contentItem, "closeButton"));
        tryCompare(panel, "visible", false);
        compare(dialog.isDialogShow, false);
        compare(callLog.calls, [["onCloseDialog"]]);
    }

    function test_dialogMayLoseItsParentInTheMidstOfClosing() {
        createAndOpen();
        const detach = name => {
            if (name === "onCloseDialog")
                dialog.parent = null;
        };
        callLog.called.connect(detach);
        click(findChild(panel.contentItem, "closeButton"));
        tryCompare(panel, "visible", false);
        callLog.called.disconnect(detach);
        compare(dialog.parent, null);

        open("BIM");
        compare(names(callLog.calls), ["onCloseDialog", "onOpenDialog", "getBimProj"]);
        compare(panel.contentItem.mapToItem(null, 0, 0), Qt.point(40, 30));
    }

    function test_dialogMayGoWhileItIsOpen() {
        createAndOpen();
        click(item("orgCheck"));
        tryCompare(item("orgCheck").popup, "opened", true);
        const gone = dialog;
        dialog = null;
        panel = null;
        gone.destroy();
        hostItem.destroy();
        hostItem = null;
        waitForRendering(parent);
    }

    function test_closingAfterTheManagerHasGone() {
        createAndOpen();
        setup.offerManager(false);
        click(findChild(panel.contentItem, "closeButton"));
        tryCompare(panel, "visible", false);
        setup.offerManager(true);
        compare(callLog.calls, []);
    }

    function test_panelFollowsThePositionOfTheRootItem() {
        create();
        open("BIM");
        compare(panel.contentItem.mapToItem(null, 0, 0), Qt.point(40, 30));
        dialog.x = 50;
        dialog.y = 12;
        compare(panel.contentItem.mapToItem(null, 0, 0), Qt.point(90, 42));
    }

    function test_dragOfTheTitleMovesThePanel() {
        createAndOpen();
        const title = item("dialogTitle");
        mousePress(title, 100, 20);
        mouseMove(title, 110, 25);
        tryCompare(panel, "x", 10);
        compare(panel.y, 5);
        // The title bar has moved with the panel, so these coordinates are relative to its new position.
        mouseMove(title, 130, 10);
        tryCompare(panel, "x", 40);
        compare(panel.y, -5);
        mouseRelease(title, 100, 20);
        mouseMove(title, 20, 30);
        compare([panel.x, panel.y], [40, -5]);
        compare(panel.visible, true);
        compare(panel.contentItem.mapToItem(null, 0, 0), Qt.point(80, 25));
    }

    function test_panelKeepsTheMouseFromTheSceneBehind() {
        createAndOpen();
        const area = Qt.createQmlObject("import QtQuick 2.15; MouseArea { anchors.fill: parent; hoverEnabled: true;"
                                        + "property int events: 0; onPressed: ++events; onWheel: ++events }",
                                        hostItem);
        mouseClick(hostItem, 10, 420);
        mouseWheel(hostItem, 10, 420, 0, -120);
        mouseClick(hostItem, 300, 20);
        compare(area.events, 0);
        mouseClick(hostItem, 400, 420);
        compare(area.events, 1);
        compare(panel.visible, true);
    }

    function test_titleTurnsOnlyWhenTheListArrives() {
        createAndOpen();
        const title = item("dialogTitle");
        compare(title.title, "关联BIM模型");
        open("DWG");
        compare(title.title, "关联BIM模型");
        compare(rowNames(), ["Tower A", "地下车库", "tower b"]);
        pdsMgr.deliver([drawing(1, "底图")]);
        compare(title.title, "关联DWG模型");
        waitForRows(1);
        open("BIM");
        compare(title.title, "关联DWG模型");
        pdsMgr.deliver(threeModels());
        compare(title.title, "关联BIM模型");
    }

    function test_rowsMadeDuringAFetchAreOfTheOldKind() {
        create();
        open("BIM");
        pdsMgr.deliverMany(100);
        waitForRows(100);
        open("DWG");
        view().positionViewAtEnd();
        tryVerify(() => row(99));
        compare(inRow(99, "outlineButton").visible, true);
        editConext.isMainProject = false;
        compare(inRow(99, "outlineButton").visible, false);
        editConext.isMainProject = true;
        compare(inRow(99, "outlineButton").visible, true);
    }

    function test_closingKeepsTheListAndTheSearchUntilTheNextOpening() {
        createAndOpen();
        item("searchBox").text = "tower";
        waitForRows(2);
        panel.close();
        compare(item("searchBox").text, "tower");
        compare(view().count, 2);
        open("BIM");
        compare(item("searchBox").text, "");
        // The list keeps the previous rows until the fetch ends.
        compare(view().count, 3);
    }

    function test_reopeningResetsNothingElse() {
        createAndOpen();
        click(item("completionCheck"));
        panel.x = 12;
        panel.y = 7;
        panel.close();
        open("BIM");
        compare([item("completionCheck").checked, item("speedProprityCheck").checked], [true, false]);
        compare([panel.x, panel.y], [12, 7]);
    }

    function test_reopeningClearsTheDepartmentAndTheMessage() {
        createAndOpen();
        bimControl.importAllowed = false;
        click(inRow(0, "downloadButton"));
        compare(item("errorText").text, "BIM工程不能重复导入");
        const box = item("orgCheck");
        box.selectDept({ id: "dept-2", name: "二部", canSelect: true });
        callLog.clear();
        panel.close();
        compare(box.deptName, "二部");
        compare(item("errorText").text, "BIM工程不能重复导入");
        open("DWG");
        compare([box.deptID, box.deptName], ["", "所有工程"]);
        compare(item("errorText").text, "");
        // The dialog does not call searchBydeptId: the fetched list replaces the filtered one.
        compare(names(callLog.calls), ["onCloseDialog", "onOpenDialog", "getDWGBimProj"]);
    }
}
