import QtQuick 2.15

// A row of the list and its buttons.
BimTest {
    name: "ProjectRow"

    function left(item) {
        return item.mapToItem(item.parent, 0, 0).x;
    }

    function right(item) {
        return left(item) + item.width;
    }

    function verticallyCentred(item) {
        return Math.abs(item.y + item.height / 2 - 20) <= 0.5;
    }

    function test_layoutOfARow() {
        createAndOpen();
        const face = row(0);
        compare([face.width, face.height], [320, 40]);
        compare(row(1).mapToItem(row(0), 0, 0).y, 40);
        compare(String(face.color), "#2d2f41");
        const image = inRow(0, "professionImage");
        const name = inRow(0, "nameText");
        const download = inRow(0, "downloadButton");
        const outline = inRow(0, "outlineButton");
        compare(left(image), 10);
        compare([image.width, image.height], [24, 24]);
        compare(left(name), right(image) + 6);
        compare(right(name), left(outline) - 10);
        compare(right(download), 320 - 15);
        compare(right(outline), left(download) - 10);
        compare([download.width, download.height], [download.sourceWidth, download.sourceHeight]);
        compare([outline.width, outline.height], [outline.sourceWidth, outline.sourceHeight]);
        verify(download.sourceWidth > 0 && outline.sourceWidth > 0);
        for (const part of [image, name, download, outline])
            verify(verticallyCentred(part), part.objectName);
    }

    function test_rowShowsItsModel() {
        createAndOpen();
        compare(inRow(1, "nameText").text, "地下车库");
        compare(inRow(1, "nameText").elide, Text.ElideRight);
        compare(String(inRow(1, "nameText").color), "#dddddd");
        compare(inRow(1, "professionImage").source, picture("profession_1.png"));
        compare(inRow(1, "professionImage").status, Image.Ready);
    }

    function test_everyProfessionHasItsImage_data() {
        return [1, 2, 3, 4, 5, 7, 9, 10, 11, 12, "other"].map(number => ({ tag: String(number) }));
    }

    function test_everyProfessionHasItsImage(data) {
        create();
        open("BIM");
        const project = model(1, "one");
        project.profImg = picture("profession_" + data.tag + ".png");
        pdsMgr.deliver([project]);
        waitForRows(1);
        compare(inRow(0, "professionImage").status, Image.Ready);
        compare(inRow(0, "professionImage").width, 24);
    }

    function test_drawingHasNoImage() {
        create();
        open("DWG");
        pdsMgr.deliver([drawing(1, "底图")]);
        waitForRows(1);
        compare(String(inRow(0, "professionImage").source), "");
        compare(inRow(0, "professionImage").width, 0);
        compare(left(inRow(0, "nameText")), 16);
        compare(inRow(0, "outlineButton").visible, false);
    }

    function test_buttonsShowTheirStatesAndTips_data() {
        return [
            { tag: "downloadButton", name: "pop_ic_bim", tip: "下载模型" },
            { tag: "outlineButton", name: "pop_ic_muxing", tip: "转换概要模型" },
        ];
    }

    function test_buttonsShowTheirStatesAndTips(data) {
        createAndOpen();
        const button = inRow(0, data.tag);
        const shown = findChild(button, "picture");
        compare(button.tipText, data.tip);
        compare(shown.source, picture(data.name + ".png"));
        compare(shown.status, Image.Ready);
        mouseMove(button, 5, 5);
        tryCompare(shown, "source", picture(data.name + "_hover.png"));
        tryCompare(findChild(button, "tip"), "visible", true);
        compare(shown.status, Image.Ready);
        compare(button.selectedImg, picture(data.name + "_hover.png"));
        button.enabled = false;
        compare(shown.source, picture(data.name + ".png"));
    }

    function test_tooltipOpensOverTheNameAndClosesBesideIt() {
        createAndOpen();
        const name = inRow(1, "nameText");
        const tip = findChild(name, "nameTip");
        compare(tip.delay, 200);
        compare(tip.text, "地下车库");
        compare(tip.visible, false);
        const area = Array.from(name.children).find(child => child.acceptedButtons !== undefined);
        compare(area.acceptedButtons, Qt.NoButton);
        mouseMove(name, 20, name.height / 2);
        tryCompare(tip, "visible", true);
        mouseMove(row(1), 3, 3);
        tryCompare(tip, "visible", false);
    }

    function test_downloadAsksFirst_data() {
        return [
            { tag: "BIM, main", kind: "BIM", main: true },
            { tag: "BIM, other", kind: "BIM", main: false },
            { tag: "DWG, main", kind: "DWG", main: true },
            { tag: "DWG, other", kind: "DWG", main: false },
        ];
    }

    function test_downloadAsksFirst(data) {
        editConext.isMainProject = data.main;
        create();
        open(data.kind);
        pdsMgr.deliver(threeModels());
        waitForRows(3);
        callLog.clear();
        click(inRow(1, "downloadButton"));
        compare(callLog.calls, [["checkBimProjValid", "guid-2", data.main], ["downLoadBimProj", "guid-2"]]);
        compare(item("errorText").text, "");
        compare(panel.visible, true);
    }

    function test_downloadFindsTheMessageEmpty() {
        createAndOpen();
        bimControl.importAllowed = false;
        click(inRow(0, "downloadButton"));
        bimControl.importAllowed = true;
        compareDuring("downLoadBimProj", () => item("errorText").text, "",
                      () => click(inRow(0, "downloadButton")));
    }

    function test_refusedDownloadShowsTheMessageUntilTheNextPress() {
        createAndOpen();
        bimControl.importAllowed = false;
        click(inRow(0, "downloadButton"));
        compare(callLog.calls, [["checkBimProjValid", "guid-1", true]]);
        compare(item("errorText").text, "BIM工程不能重复导入");
        bimControl.importAllowed = true;
        click(inRow(2, "downloadButton"));
        compare(item("errorText").text, "");
        compare(callLog.calls[2], ["downLoadBimProj", "guid-3"]);
    }

    function test_outlineButtonAsksNothingAndKeepsTheMessage() {
        createAndOpen();
        bimControl.importAllowed = false;
        click(inRow(0, "downloadButton"));
        callLog.clear();
        click(inRow(1, "outlineButton"));
        compare(callLog.calls, [["convertSimplyMode", "guid-2", false]]);
        compare(item("errorText").text, "BIM工程不能重复导入");
    }

    function test_outlineButtonSendsWhetherCompletenessComesFirst() {
        createAndOpen();
        click(item("completionCheck"));
        click(inRow(0, "outlineButton"));
        click(item("speedProprityCheck"));
        click(inRow(0, "outlineButton"));
        compare(callLog.calls, [["convertSimplyMode", "guid-1", true], ["convertSimplyMode", "guid-1", false]]);
    }

    function test_rowsOfAnOldListStillWorkDuringAFetch() {
        createAndOpen();
        open("BIM");
        callLog.clear();
        click(inRow(2, "downloadButton"));
        compare(callLog.calls[1], ["downLoadBimProj", "guid-3"]);
    }

    function test_buttonsOfASearchedRowActOnThatRow() {
        createAndOpen();
        item("searchBox").text = "b";
        waitForRows(1);
        click(inRow(0, "downloadButton"));
        compare(callLog.calls[1], ["downLoadBimProj", "guid-3"]);
    }
}
