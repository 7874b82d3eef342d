import QtQuick 2.15

// A list with as many models as a large enterprise has.
BimTest {
    name: "LongList"

    readonly property int length: 50000

    function openLongList() {
        create();
        open("BIM");
        compare(pdsMgr.listReads, 1);
        pdsMgr.deliverMany(length);
        waitForRows(length);
    }

    function madeRows() {
        return view().contentItem.children.length;
    }

    function test_listIsReadOncePerChange() {
        openLongList();
        compare(pdsMgr.listReads, 2);
        view().contentY = 30000;
        tryVerify(() => row(750));
        item("searchBox").text = "模型 4";
        tryVerify(() => view().count === 11111);
        item("searchBox").text = "";
        tryVerify(() => view().count === length);
        click(inRow(0, "downloadButton"));
        compare(pdsMgr.listReads, 2);
        pdsMgr.filter([model(1, "one")]);
        waitForRows(1);
        compare(pdsMgr.listReads, 3);
    }

    function test_searchLooksAtEachModelOnce() {
        openLongList();
        const list = item("searchList");
        let looks = 0;
        list.listDataFunc = index => {
            ++looks;
            return list.dataModel[index].name;
        };
        item("searchBox").text = "4";
        tryVerify(() => view().count < length);
        compare(looks, length);
        view().positionViewAtEnd();
        tryVerify(() => row(view().count - 1));
        compare(looks, length);
    }

    function test_onlyTheRowsInSightAreMade() {
        openLongList();
        verify(madeRows() < 60, madeRows());
        for (let y = 0; y < 40 * length - view().height; y += 19990)
            view().contentY = y;
        view().positionViewAtEnd();
        tryVerify(() => row(length - 1));
        compare(inRow(length - 1, "nameText").text, "模型 49999");
        verify(madeRows() < 60, madeRows());
    }

    function test_rowsThatComeBackShowTheirOwnModel() {
        openLongList();
        for (let index = 0; index < length; index += 1237) {
            view().positionViewAtIndex(index, ListView.Beginning);
            tryVerify(() => row(index));
            compare(inRow(index, "nameText").text, "模型 " + index);
        }
        callLog.clear();
        view().positionViewAtIndex(25000, ListView.Beginning);
        tryVerify(() => row(25000));
        waitForRendering(view());
        click(inRow(25000, "downloadButton"));
        compare(callLog.calls[1], ["downLoadBimProj", "guid-25000"]);
    }

    function test_searchGoesToTheTopAndFindsTheLastOne() {
        openLongList();
        view().positionViewAtEnd();
        item("searchBox").text = "49999";
        waitForRows(1);
        compare(rowNames(), ["模型 49999"]);
        item("searchBox").text = "";
        waitForRows(length);
        compare(view().contentY, view().originY);
    }

    function test_newTextAndNewListReplaceARunningSearch() {
        openLongList();
        item("searchBox").text = "4";
        compare(view().count, length);
        item("searchBox").text = "49999";
        waitForRows(1);
        compare(rowNames(), ["模型 49999"]);
        item("searchBox").text = "4";
        compare(view().count, 1);
        pdsMgr.deliver([model(1, "3"), model(2, "4"), model(3, "44")]);
        compare(view().count, 2);
        tryVerify(() => row(1));
        compare(rowNames(), ["4", "44"]);
        item("searchBox").text = "";
        waitForRows(3);
    }

    function test_shutdownEndsARunningSearch() {
        openLongList();
        item("searchBox").text = "4";
        setup.offerManager(false);
        const rows = view().count;
        setup.offerManager(true);
        compare(rows, 0);
    }

    function test_listOfEqualLengthStartsAtTheTopToo() {
        openLongList();
        view().positionViewAtEnd();
        pdsMgr.deliverMany(length);
        compare(view().contentY, view().originY);
        tryVerify(() => row(0));
    }

    function test_wheelScrolls() {
        openLongList();
        mouseWheel(view(), 100, 100, 0, -600);
        tryVerify(() => view().contentY > 0);
    }
}
