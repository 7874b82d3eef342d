import QtQuick 2.15

Item {
    width: 400
    height: 700

    PageTest {
        name: "ApplistComp"

        function companies(count) {
            const list = [];
            for (let i = 0; i < count; ++i)
                list.push({ enterpriseId: 100 + i, enterpriseName: "company " + i });
            return list;
        }

        function openList(count) {
            openWindow();
            mouseMove(loginWindow, 5, 400);
            loginWindow.cimServer = "http://a";
            loginCtrl.appList = companies(count);
            item("contentLoader").source = loginWindow.compList["AppListComp"];
            tryCompare(item("companyList"), "count", count);
        }

        function row(index) {
            tryVerify(() => item("companyList").itemAtIndex(index));
            return item("companyList").itemAtIndex(index);
        }

        function rowColor(index) {
            return String(findChild(row(index), "companyFace").color);
        }

        function scrollBar() {
            return Array.from(item("companyList").children).find(child => child.policy !== undefined);
        }

        function test_startsWithoutASelection() {
            openList(3);
            const page = item("applistComp");
            compare(page.selIndex1, -1);
            compare([page.appID1, page.appSecret1, page.appName1, page.appType1], ["", "", "", ""]);
            compare(item("confirmButton").mouseEnabled, false);
        }

        function test_places() {
            openList(3);
            const panel = item("panel");
            compare([panel.x, panel.y, panel.width, panel.height], [26, 0, 288, 252]);
            compare(String(panel.color), "#353749");
            const [title, fold, line, list] = Array.from(panel.children);
            compare([title.x, title.y, title.height, title.text], [15, 10, 30, "选择企业:"]);
            compare([title.font.family, title.font.pixelSize], ["微软雅黑", 14]);
            compare(title.verticalAlignment, Text.AlignVCenter);
            compare(String(title.color), "#ffffff");
            compare([fold.y, 288 - fold.x - fold.width], [15, 15]);
            compare([line.x, line.y, line.width, line.height], [15, 46, 258, 1]);
            compare(String(line.color), "#4a4b5c");
            compare(list, item("companyList"));
            compare([list.x, list.x + list.width, list.y, list.y + list.height], [15, 283, 53, 247]);
            const button = item("confirmButton");
            compare([button.x, button.y, button.width, button.height], [26, 350 - 40 - 36, 288, 36]);
            compare(button.text, "确定");
            const error = Array.from(item("applistComp").children).find(child => child.wrapMode !== undefined);
            compare([error.x, error.y + error.height, error.width], [26, 350 - 76, 288]);
        }

        function test_rowLooks() {
            openList(3);
            const face = findChild(row(1), "companyFace");
            compare(row(1).height, 40);
            compare([face.y, face.height], [6, 34]);
            const label = face.children[0];
            compare(label.text, "company 1");
            const tick = findChild(row(1), "tick");
            compare([label.x, label.x + label.width], [10, tick.x - 10]);
            fuzzyCompare(label.y + label.height / 2, 17, 0.5);
            compare(label.elide, Text.ElideRight);
            compare([label.font.family, label.font.pixelSize], ["微软雅黑", 13]);
            compare(String(label.color), "#dddddd");
            compare(rowColor(1), "#353749");
            compare(findChild(row(1), "tick").visible, false);
        }

        function test_rowsStandInTheOrderOfTheService() {
            openList(0);
            loginCtrl.appList = ["b", "c", "a", "b"].map(name => ({ enterpriseId: 1, enterpriseName: name }));
            compare([0, 1, 2, 3].map(index => findChild(row(index), "companyFace").children[0].text),
                    ["b", "c", "a", "b"]);
        }

        function test_rowDarkensUnderTheMouse() {
            openList(3);
            mouseMove(row(1), 50, 20);
            tryVerify(() => rowColor(1) === "#2d2f41");
            compare(rowColor(0), "#353749");
            mouseMove(loginWindow, 5, 400);
            tryVerify(() => rowColor(1) === "#353749");
        }

        function test_clickSelectsWithoutSigningIn() {
            openList(3);
            mouseClick(row(1));
            const page = item("applistComp");
            compare([page.selIndex1, page.appID1, page.appName1], [1, "101", "company 1"]);
            compare([page.appSecret1, page.appType1], ["", ""]);
            mouseMove(loginWindow, 5, 400);
            compare(rowColor(1), "#2d2f41");
            compare(String(findChild(row(1), "companyFace").children[0].color), "#21a7e9");
            const tick = findChild(row(1), "tick");
            compare(tick.visible, true);
            compare(tick.source, picture("logIn_ic_xuanzhong.png"));
            compare(tick.status, Image.Ready);
            compare([258 - tick.x - tick.width, tick.y + tick.height / 2], [10, 17]);
            compare(loginCtrl.calls, []);
            compare(item("confirmButton").mouseEnabled, true);
        }

        function test_lastClickedRowIsTheSelectedOne() {
            openList(3);
            mouseClick(row(0));
            mouseClick(row(2));
            compare(findChild(row(0), "tick").visible, false);
            compare(item("applistComp").appID1, "102");
            mouseClick(item("confirmButton"));
            compare(loginCtrl.calls, [["onLogin", "http://a", "102", "company 2"]]);
            verify(item("validComp"));
        }

        function test_withoutASelectionTheButtonDoesNothing() {
            openList(3);
            mouseClick(item("confirmButton"));
            compare(loginCtrl.calls, []);
            verify(item("applistComp"));
        }

        function test_exactlyOnePassesWithoutAClick() {
            openList(1);
            tryVerify(() => item("validComp"));
            compare(loginCtrl.calls[0], ["onLogin", "http://a", "100", "company 0"]);
        }

        function test_listThatShrinksToOnePassesToo() {
            openList(3);
            loginCtrl.appList = companies(1);
            tryVerify(() => item("validComp"));
            compare(loginCtrl.calls[0], ["onLogin", "http://a", "100", "company 0"]);
        }

        function test_noneKeepsTheUserHere() {
            openList(0);
            compare(item("confirmButton").mouseEnabled, false);
            mouseClick(item("confirmButton"));
            wait(0);
            compare(loginCtrl.calls, []);
            verify(item("applistComp"));
        }

        function test_foldHidesTheListAndShowsItAgain() {
            openList(3);
            const fold = item("foldImage");
            compare(fold.source, picture("bar_ic_zhankai.png"));
            compare(fold.status, Image.Ready);
            mouseClick(fold);
            compare(fold.source, picture("bar_ic_shouqi.png"));
            compare(fold.status, Image.Ready);
            compare(item("companyList").visible, false);
            mouseClick(fold);
            compare(fold.source, picture("bar_ic_zhankai.png"));
            compare(item("companyList").visible, true);
        }

        function test_longListScrolls() {
            openList(30);
            const list = item("companyList");
            compare([list.snapMode, list.boundsBehavior, list.clip],
                    [ListView.SnapToItem, Flickable.StopAtBounds, true]);
            const bar = scrollBar();
            compare(bar.visible, true);
            compare(bar.width, 4);
            compare([bar.contentItem.width, bar.contentItem.radius], [4, 2]);
            compare(bar.contentItem.opacity, 0.2);
            compare(String(bar.contentItem.color), "#ffffff");
            compare(String(bar.background.color), "#535353");
            compare(bar.background.radius, 2);
            mouseWheel(list, 50, 50, 0, -1200);
            tryVerify(() => list.contentY > 0);
        }

        function test_shortListHasNoScrollBar() {
            openList(3);
            compare(scrollBar().visible, false);
        }

        // Incomplete entries of the service's list, and the id and name that the page passes to onLogin.
        function test_markedEntryIsTheOneThatIsEntered_data() {
            const complete = { enterpriseId: 1, enterpriseName: "A" };
            return [
                { tag: "no id", second: { enterpriseName: "B" }, entered: ["", "B"] },
                { tag: "no name", second: { enterpriseId: 2 }, entered: ["2", ""] },
                { tag: "neither", second: {}, entered: ["", ""] },
                { tag: "null", second: { enterpriseId: null, enterpriseName: null }, entered: ["", ""] },
                { tag: "id is a text", second: { enterpriseId: "x", enterpriseName: 3 }, entered: ["x", "3"] }
            ].map(entry => Object.assign({ list: [complete, entry.second] }, entry));
        }

        function test_markedEntryIsTheOneThatIsEntered(data) {
            openList(3);
            loginCtrl.appList = data.list;
            mouseClick(row(0));
            mouseClick(row(1));
            const page = item("applistComp");
            compare([page.selIndex1, page.appID1, page.appName1], [1].concat(data.entered));
            compare(findChild(row(1), "tick").visible, true);
            mouseClick(item("confirmButton"));
            compare(loginCtrl.calls, [["onLogin", "http://a"].concat(data.entered)]);
        }

        function test_singleIncompleteEntryPassesToo_data() {
            return [
                { tag: "no id", entry: { enterpriseName: "B" }, entered: ["", "B"] },
                { tag: "no name", entry: { enterpriseId: 2 }, entered: ["2", ""] }
            ];
        }

        function test_singleIncompleteEntryPassesToo(data) {
            openList(3);
            loginCtrl.appList = [data.entry];
            tryVerify(() => item("validComp"));
            compare(loginCtrl.calls[0], ["onLogin", "http://a"].concat(data.entered));
        }

        function test_enteringStartsNoSecondOne() {
            openList(3);
            mouseClick(row(1));
            const overlay = Array.from(item("applistComp").children).find(child => child.cursorShape !== undefined);
            compare(overlay.visible, false);
            during.onLogin = () => {
                compare([overlay.visible, overlay.cursorShape], [true, Qt.BusyCursor]);
                mouseClick(item("confirmButton"));
                mouseMove(row(2), 50, 20);
                mouseClick(row(2));
                compare(rowColor(2), "#353749");
                compare(item("applistComp").selIndex1, 1);
            };
            mouseClick(item("confirmButton"));
            compare(loginCtrl.calls.filter(call => call[0] === "onLogin"),
                    [["onLogin", "http://a", "101", "company 1"]]);
            verify(item("validComp"));
        }
    }
}
