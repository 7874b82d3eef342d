import QtQuick 2.15

// The positions, sizes and visibility of the panel's parts, and its search.
BimTest {
    name: "PanelFirm"

    function place(item) {
        const corner = item.mapToItem(panel.contentItem, 0, 0);
        return [corner.x, corner.y, item.width, item.height];
    }

    function bottom(item) {
        return place(item)[1] + item.height;
    }

    function test_layoutFromTopToBottom() {
        createAndOpen();
        const title = item("dialogTitle");
        compare(place(title).slice(0, 3), [0, 0, 360]);
        compare(place(item("orgCheck")), [20, title.height + 8, 320, 26]);
        compare(place(item("searchBox")), [20, bottom(item("orgCheck")) + 8, 320, 26]);
        const scroll = item("scrollView");
        compare(place(scroll).slice(0, 3), [0, bottom(item("searchBox")) + 8, 360]);
        compare(bottom(scroll), place(item("radioRow"))[1] - 8);
        compare(String(scroll.eScrollBackGround), "#2d2f41");
        const list = item("searchList");
        compare(place(list), [20, place(scroll)[1], 320, scroll.height]);
        compare(list.clip, true);
        const error = item("errorText");
        compare(place(error)[0], 30);
        compare(place(error)[1], 444 - 20 - 20);
        compare(error.height, 20);
        compare(error.font.pixelSize, 12);
        compare(String(error.color), "#1473e6");
        compare(error.text, "");
        compare(place(item("radioRow"))[0], 20);
        compare(item("radioRow").width, 320);
        compare(bottom(item("radioRow")), place(error)[1] - 8);
        compare(item("radioRow").spacing, 10);
    }

    function test_radioButtonsShowForBimModelsInAMainProjectOnly_data() {
        return [
            { tag: "BIM, main", kind: "BIM", main: true, shown: true },
            { tag: "BIM, other", kind: "BIM", main: false, shown: false },
            { tag: "DWG, main", kind: "DWG", main: true, shown: false },
            { tag: "DWG, other", kind: "DWG", main: false, shown: false },
        ];
    }

    function test_radioButtonsShowForBimModelsInAMainProjectOnly(data) {
        editConext.isMainProject = data.main;
        create();
        open(data.kind);
        pdsMgr.deliver([model(1, "one")]);
        waitForRows(1);
        compare(item("radioRow").visible, data.shown);
        compare(item("speedProprityCheck").visible, data.shown);
        compare(item("completionCheck").visible, data.shown);
        compare(inRow(0, "outlineButton").visible, data.shown);
        compare(inRow(0, "downloadButton").visible, true);
    }

    function test_withoutAProjectThereIsNoOutline() {
        createAndOpen();
        const shown = () => [item("radioRow").visible, inRow(0, "outlineButton").visible];
        setup.offerProject(false);
        const withoutProject = shown();
        setup.offerProject(true);
        compare(withoutProject, [false, false]);
        compare(shown(), [true, true]);
    }

    function test_withoutAManagerTheTitleNamesModels() {
        createAndOpen();
        setup.offerManager(false);
        const title = item("dialogTitle").title;
        setup.offerManager(true);
        compare(title, "关联BIM模型");
    }

    function test_radioButtonsExcludeEachOther() {
        createAndOpen();
        const speed = item("speedProprityCheck");
        const completion = item("completionCheck");
        compare([speed.text, completion.text], ["性能优先", "完整度优先"]);
        compare([speed.checked, completion.checked], [true, false]);
        compare(completion.x, speed.width + 10);
        click(completion);
        compare([speed.checked, completion.checked], [false, true]);
        click(completion);
        compare([speed.checked, completion.checked], [false, true]);
        click(speed);
        compare([speed.checked, completion.checked], [true, false]);
        for (const button of [speed, completion]) {
            compare([button.checkedUrl, button.normalUrl].map(String),
                    ["qrc:/EditorPlug/qmls/images1/checkBox_selected.png", "qrc:/EditorPlug/qmls/images1/checkBox.png"]);
        }
        compare(speed.indicator.source, speed.checkedUrl);
        compare(speed.indicator.status, Image.Ready);
        compare(completion.indicator.source, "qrc:/EditorPlug/qmls/images1/checkBox.png");
        compare(completion.indicator.status, Image.Ready);
    }

    function test_typingSearchesTheNamesInAnyCase() {
        createAndOpen();
        click(item("searchBox"));
        type("TOWER");
        compare(rowNames(), ["Tower A", "tower b"]);
        type(" b");
        compare(rowNames(), ["tower b"]);
        type("x");
        compare(view().count, 0);
        compare(names(callLog.calls), []);
    }

    function test_clearButtonEmptiesTheSearch() {
        createAndOpen();
        const box = item("searchBox");
        const clear = findChild(box, "clearButton");
        compare(clear.visible, false);
        box.text = "地下";
        compare(rowNames(), ["地下车库"]);
        compare(clear.visible, true);
        click(clear);
        compare(box.text, "");
        waitForRows(3);
        compare(clear.visible, false);
    }

    function test_searchHoldsForAListThatArrivesLater() {
        createAndOpen();
        item("searchBox").text = "tower";
        pdsMgr.filter([model(4, "Bridge"), model(5, "Old Tower")]);
        waitForRows(1);
        compare(rowNames(), ["Old Tower"]);
    }

    function test_shorterListsLeaveNoRowsBehind() {
        createAndOpen();
        pdsMgr.deliver([model(7, "last")]);
        waitForRows(1);
        compare(rowNames(), ["last"]);
        pdsMgr.deliver([]);
        waitForRows(0);
        compare(item("errorText").text, "");
    }

    function test_listOfEqualLengthShowsItsOwnRows() {
        createAndOpen();
        pdsMgr.deliver([model(7, "x"), model(8, "y"), model(9, "z")]);
        compare(rowNames(), ["x", "y", "z"]);
        click(inRow(2, "downloadButton"));
        compare(callLog.calls[1], ["downLoadBimProj", "guid-9"]);
    }

    function test_escapeClosesThePanel() {
        createAndOpen();
        item("searchBox").forceActiveFocus();
        keyClick(Qt.Key_Escape);
        tryCompare(panel, "visible", false);
        compare(callLog.calls, [["onCloseDialog"]]);
    }

    // The columns of a list, like those of the plug-in.
    function columnsOf(models) {
        const columns = {};
        for (const key of Object.keys(models[0]))
            columns[key] = models.map(model => model[key]);
        return columns;
    }

    function test_rowsAreCreatedFromTheColumns_data() {
        return [{ tag: "models", models: threeModels() },
                { tag: "drawings", models: [drawing(1, "A1"), drawing(2, "A2")] }];
    }

    function test_rowsAreCreatedFromTheColumns(data) {
        create();
        open("BIM");
        const source = createTemporaryQmlObject("import QtQml 2.15; QtObject { property var columns: ({}) }", hostItem);
        dialog.modelColumns = source;
        compare(item("searchList").dataModel, []);
        const reads = pdsMgr.listReads;
        source.columns = columnsOf(data.models);
        waitForRows(data.models.length);
        compare(rowNames(), data.models.map(model => model.name));
        const rows = item("searchList").dataModel;
        compare(JSON.stringify(rows), JSON.stringify(data.models.map(inKeyOrder)));
        compare(pdsMgr.listReads, reads);
        source.columns = {};
        waitForRows(0);
        // Without the plug-in's columns, the page reads the manager's list.
        source.columns = columnsOf(data.models);
        dialog.modelColumns = null;
        waitForRows(0);
        compare(pdsMgr.listReads, reads + 1);
    }

    // A copy with the keys in the order in which Qt converts them.
    function inKeyOrder(model) {
        const copy = {};
        for (const key of Object.keys(model).sort())
            copy[key] = model[key];
        return copy;
    }
}
