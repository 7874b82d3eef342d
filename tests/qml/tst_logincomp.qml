import QtQuick 2.15

Item {
    width: 400
    height: 700

    PageTest {
        name: "LoginComp"

        function enter(objectName, text) {
            mouseClick(item(objectName), 100, 18);
            keyClick(Qt.Key_A, Qt.ControlModifier);
            if (text === "")
                keyClick(Qt.Key_Delete);
            type(text);
        }

        function fill(user, passwd, address) {
            enter("userNameBox", user);
            enter("passwordField", passwd);
            enter("addressBox", address);
        }

        function loginCalls() {
            return loginCtrl.calls.filter(call => call[0] === "login");
        }

        function compareError(text) {
            compare(item("errorItem").text, text);
            compare(item("errorItem").visible, true);
        }

        function chooseUser(index) {
            const box = item("userNameBox");
            mouseClick(box, box.width - 12, 18);
            tryVerify(() => box.popup.contentItem.itemAtIndex(index));
            mouseClick(box.popup.contentItem.itemAtIndex(index), 50, 10);
        }

        function test_startsEmptyOnTheDefaultAddress() {
            openWindow();
            const page = item("loginComp");
            compare([page.username, page.passwd, page.cimUrl, page.pdsUrl], ["", "", "http://default", ""]);
            compare(item("userNameBox").outText, "");
            compare(item("passwordField").text, "");
            compare(item("addressBox").outText, "http://default");
            compare(item("keepPassword").checked, false);
            compare(item("errorItem").visible, false);
        }

        function test_places_data() {
            return [
                { tag: "userNameBox", y: 0, height: 36 },
                { tag: "passwordField", y: 56, height: 36 },
                { tag: "addressBox", y: 112, height: 36 },
                { tag: "keepPassword", y: 162, height: 16 },
                { tag: "loginButton", y: 350 - 40 - 36, height: 36 }
            ];
        }

        function test_places(data) {
            openWindow();
            const element = item(data.tag);
            compare(element.x, 26);
            compare(element.y, data.y);
            compare(element.height, data.height);
            if (data.tag !== "keepPassword")
                compare(element.width, 340 - 2 * 26);
        }

        function test_errorLineStandsAboveTheButton() {
            openWindow();
            const line = item("errorItem");
            compare(line.y + line.height, 350 - 76);
            compare([line.x, line.width], [26, 288]);
            compare([line.verticalAlignment, line.bottomPadding], [Text.AlignBottom, 6]);
            compare(String(line.color), "#1473e6");
        }

        function test_checkBoxStandsBeforeItsLabel() {
            openWindow();
            const { indicator, contentItem: label } = item("keepPassword");
            compare([indicator.x, indicator.y, label.x, label.y], [0, 1.5, 0, 0]);
            compare([label.leftPadding, label.height, label.verticalAlignment], [19, 16, Text.AlignVCenter]);
            compare(label.text, "记住密码");
            compare(item("keepPassword").width, label.implicitWidth);
            compare(String(label.color), "#dddddd");
            item("keepPassword").forceActiveFocus(Qt.TabFocusReason);
            compare(String(label.color), "#ffffff");
            const outline = findChild(item("keepPassword"), "focusFrame");
            compare([outline.visible, outline.x, outline.y], [true, -4, -4]);
            compare(String(outline.border.color), "#ffffff");
        }

        function test_texts() {
            openWindow();
            compare(item("userNameBox").placeholderText, "用户名");
            compare(item("passwordField").placeholderText, "密码");
            compare(item("addressBox").placeholderText, "Nelvo服务器地址");
            compare(item("keepPassword").text, "记住密码");
            compare(item("loginButton").text, "登录");
            const texts = ["userNameBox", "passwordField", "addressBox", "errorItem"].map(item);
            texts.push(findChild(item("userNameBox"), "field"), findChild(item("addressBox"), "field"),
                       item("keepPassword").contentItem);
            for (const text of texts)
                compare([text.font.family, text.font.pixelSize], ["微软雅黑", 12]);
        }

        function test_pictures() {
            openWindow();
            compare(item("userNameBox").headImage, picture("userName.png"));
            compare(item("addressBox").headImage, picture("C.png"));
            const key = item("passwordField").background.children[0];
            compare(key.source, picture("passwd.png"));
            compare([key.x, key.y, key.width, key.height], [2, 2, 32, 32]);
            const box = item("keepPassword");
            compare([box.indicator.width, box.indicator.height], [13, 13]);
            compare(box.indicator.source, picture("checkNo.png"));
            mouseClick(box);
            compare(box.indicator.source, picture("checkYes.png"));
            compare(box.indicator.status, Image.Ready);
        }

        function test_passwordIsHidden() {
            openWindow();
            compare(item("passwordField").echoMode, TextInput.Password);
            compare(String(item("passwordField").color), "#ffffff");
            compare([item("passwordField").selectionColor, item("passwordField").selectedTextColor].map(String),
                    ["#313343", "#ffffff"]);
            compare(String(item("passwordField").background.color), "#414458");
            compare([item("passwordField").leftPadding, item("passwordField").rightPadding], [40, 6]);
            item("passwordField").color = "#123456";
            compare(String(item("passwordField").selectedTextColor), "#123456");
        }

        function test_checks_data() {
            const missing = "用户名或密码输入为空！";
            const noAddress = "Editor 服务器地址为空！";
            const badAddress = "Editor 地址错误！";
            return [
                { tag: "no user", fields: ["", "pw", "http://a"], error: missing },
                { tag: "no password", fields: ["ann", "", "http://a"], error: missing },
                { tag: "blank user", fields: ["  ", "pw", "http://a"], error: missing },
                { tag: "blank password", fields: ["ann", "  ", "http://a"], error: missing },
                { tag: "nothing at all", fields: ["", "", ""], error: missing },
                { tag: "no address", fields: ["ann", "pw", ""], error: noAddress },
                { tag: "blank address", fields: ["ann", "pw", " "], error: noAddress },
                { tag: "no scheme", fields: ["ann", "pw", "host:80"], error: badAddress },
                { tag: "other scheme", fields: ["ann", "pw", "ftp://host"], error: badAddress },
                { tag: "half a scheme", fields: ["ann", "pw", "http:/host"], error: badAddress }
            ];
        }

        function test_checks(data) {
            openWindow();
            fill(...data.fields);
            mouseClick(item("loginButton"));
            compareError(data.error);
            compare(loginCtrl.calls, []);
            verify(item("loginComp"));
        }

        function test_bothSchemesPass_data() {
            return [{ tag: "http://a" }, { tag: "https://a" }];
        }

        function test_bothSchemesPass(data) {
            openWindow();
            fill("ann", "pw", data.tag);
            mouseClick(item("loginButton"));
            compare(loginCalls(), [["login", "ann", "pw", data.tag, ""]]);
        }

        function test_blanksAroundTheTextsAreRemoved() {
            openWindow();
            fill(" ann ", "  p w ", " http://a  ");
            const page = item("loginComp");
            compare([page.username, page.passwd, page.cimUrl], ["ann", "p w", "http://a"]);
            mouseClick(item("loginButton"));
            compare(loginCalls(), [["login", "ann", "p w", "http://a", ""]]);
        }

        function test_successInOrder() {
            openWindow();
            fill("ann", "pw", "https://a");
            mouseClick(item("keepPassword"));
            mouseClick(item("loginButton"));
            compare(loginCtrl.calls, [["login", "ann", "pw", "https://a", ""],
                                      ["onResetCache", "ann", "pw", "https://a", "", true]]);
            compare(warningLog.debugs(), [" login success...."]);
            compare(loginWindow.cimServer, "https://a");
            compare(loginWindow.pdsServer, "");
            compare(item("contentLoader").source, loginWindow.compList["AppListComp"]);
        }

        function test_successHandsOutBothAddresses() {
            openWindow();
            fill("ann", "pw", "https://a");
            item("loginComp").pdsUrl = "https://p";
            mouseClick(item("loginButton"));
            compare([loginWindow.cimServer, loginWindow.pdsServer], ["https://a", "https://p"]);
        }

        function test_successKeepsThePageUntilTheCacheIsWritten() {
            openWindow();
            fill("ann", "pw", "https://a");
            let seen = [];
            during.onResetCache = () => {
                seen = [item("errorItem").text, item("errorItem").visible, loginWindow.cimServer];
            };
            mouseClick(item("loginButton"));
            compare(seen, ["", true, ""]);
        }

        function test_failureIsShownAsItComes() {
            openWindow();
            loginCtrl.answer = "密码<错误>";
            fill("ann", "pw", "http://a");
            mouseClick(item("loginButton"));
            compareError("密码<错误>");
            compare(loginCtrl.calls.length, 1);
            compare(loginWindow.cimServer, "");
            verify(item("loginComp"));
        }

        function test_signsInAgainAfterAFailure() {
            openWindow();
            loginCtrl.answer = "refused";
            fill("ann", "pw", "http://a");
            mouseClick(item("loginButton"));
            loginCtrl.answer = "";
            mouseClick(item("loginButton"));
            compare(loginCalls().length, 2);
            verify(item("applistComp"));
        }

        function test_waitingSignInStartsNoSecondOne() {
            openWindow();
            loginCtrl.answer = "refused";
            fill("ann", "pw", "http://a");
            during.login = () => {
                mouseClick(item("loginButton"));
                mouseMove(item("loginButton"), 50, 18);
                keyClick(Qt.Key_Return);
                keyClick(Qt.Key_Enter);
                mouseClick(item("keepPassword"));
            };
            mouseClick(item("loginButton"));
            compare(loginCalls().length, 1);
            compare(item("keepPassword").checked, false);
            compareError("refused");
        }

        function test_waitingSignInShowsNoHover() {
            openWindow();
            mouseMove(loginWindow, 5, 400);
            fill("ann", "pw", "http://a");
            const overlay = Array.from(item("loginComp").children).find(child => child.cursorShape !== undefined);
            compare(overlay.visible, false);
            let seen;
            during.login = () => {
                mouseMove(item("loginButton"), 50, 18);
                seen = [item("loginButton").glowVisible, overlay.visible, overlay.cursorShape];
            };
            keyClick(Qt.Key_Return);
            compare(seen, [false, true, Qt.BusyCursor]);
        }

        function test_editsDuringTheWaitDoNotReachTheCache() {
            openWindow();
            fill("ann", "pw", "http://a");
            during.login = () => type("x");
            mouseClick(item("loginButton"));
            compare(loginCtrl.calls[1], ["onResetCache", "ann", "pw", "http://a", "", false]);
            compare(loginWindow.cimServer, "http://a");
        }

        function test_returnAndEnterSignInFromEverywhere_data() {
            const rows = [];
            for (const name of ["userNameBox", "passwordField", "addressBox", "keepPassword"]) {
                rows.push({ tag: name + " Return", name: name, key: Qt.Key_Return });
                rows.push({ tag: name + " Enter", name: name, key: Qt.Key_Enter });
            }
            return rows;
        }

        function test_returnAndEnterSignInFromEverywhere(data) {
            openWindow();
            loginCtrl.answer = "refused";
            fill("ann", "pw", "http://a");
            item(data.name).forceActiveFocus(Qt.TabFocusReason);
            tryCompare(item(data.name), "activeFocus", true);
            keyClick(data.key);
            compare(loginCalls().length, 1);
            keyClick(data.key);
            compare(loginCalls().length, 2);
        }

        function test_returnRightAfterTheLoadChecksTheForm() {
            openWindow();
            keyClick(Qt.Key_Return);
            compareError("用户名或密码输入为空！");
        }

        function test_returnInAnOpenListDoesNotSignIn() {
            openWindow();
            loginWindow.userInfos = [account("ann", "secret", []), account("bob", "hidden", [])];
            const box = item("userNameBox");
            mouseClick(box, box.width - 12, 18);
            tryCompare(box.popup, "opened", true);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Return);
            tryCompare(box.popup, "visible", false);
            compare(loginCtrl.calls, []);
            compare(item("loginComp").username, "bob");
            keyClick(Qt.Key_Return);
            compare(loginCalls(), [["login", "bob", "hidden", "http://default", ""]]);
        }

        function test_cachedUserWithAPasswordFillsTheForm() {
            openWindow();
            loginWindow.userInfos = [account("bob", "", []), account("ann", "secret", ["http://one"])];
            chooseUser(1);
            compare(item("loginComp").username, "ann");
            compare(item("passwordField").text, "secret");
            compare(item("loginComp").passwd, "secret");
            compare(item("keepPassword").checked, true);
            compare(item("addressBox").dropList, ["http://one", "http://default"]);
            compare(item("addressBox").outText, "http://one");
            compare(item("loginComp").cimUrl, "http://one");
        }

        function test_cachedUserWithoutAPasswordLeavesTheBoxUnchecked() {
            openWindow();
            loginWindow.userInfos = [account("ann", "secret", ["http://one"]), account("bob", "", [])];
            compare(item("keepPassword").checked, true);
            chooseUser(1);
            compare(item("passwordField").text, "");
            compare(item("keepPassword").checked, false);
            compare(item("addressBox").dropList, ["http://default"]);
        }

        function test_userThatIsNotCachedLeavesOnlyTheDefaultAddress() {
            openWindow();
            loginWindow.userInfos = [account("ann", "secret", ["http://one"])];
            enter("userNameBox", "eve");
            compare(item("loginComp").username, "eve");
            compare(item("passwordField").text, "");
            compare(item("keepPassword").checked, false);
            compare(item("addressBox").dropList, ["http://default"]);
            compare(item("addressBox").outText, "http://default");
        }

        function test_typingTheNameOfACachedUserFillsTheForm() {
            openWindow();
            loginWindow.userInfos = [account("bob", "", []), account("ann", "secret", [])];
            enter("userNameBox", "an");
            compare(item("passwordField").text, "");
            type("n");
            compare(item("passwordField").text, "secret");
            compare(item("keepPassword").checked, true);
        }

        function test_firstOfTwoAccountsOfAUserCounts() {
            openWindow();
            loginWindow.userInfos = [account("ann", "first", []), account("ann", "second", [])];
            compare(item("passwordField").text, "first");
        }

        function test_defaultAddressIsNotListedTwice() {
            openWindow();
            loginWindow.userInfos = [account("ann", "", ["http://default", "http://one"])];
            compare(item("addressBox").dropList, ["http://default", "http://one"]);
            compare(item("addressBox").outText, "http://default");
        }

        function test_cachedAccountsStayAsTheyAre() {
            openWindow();
            loginWindow.userInfos = [account("ann", "", ["http://one"])];
            compare(item("addressBox").dropList.length, 2);
            compare(loginWindow.userInfos[0].cimUrlList, ["http://one"]);
        }

        function test_otherUserNameUnchecksTheBox() {
            openWindow();
            mouseClick(item("keepPassword"));
            compare(item("keepPassword").checked, true);
            enter("userNameBox", "a");
            compare(item("keepPassword").checked, false);
        }

        function test_anyEditOfThePasswordUnchecksTheBox() {
            openWindow();
            loginWindow.userInfos = [account("ann", "secret", [])];
            compare(item("keepPassword").checked, true);
            mouseClick(item("passwordField"), 200, 18);
            type("x");
            compare(item("keepPassword").checked, false);
            mouseClick(item("keepPassword"));
            compare(item("keepPassword").checked, true);
            mouseClick(item("passwordField"), 200, 18);
            keyClick(Qt.Key_Backspace);
            compare(item("keepPassword").checked, false);
        }

        function test_firstCachedUserIsChosen() {
            openWindow();
            loginWindow.userInfos = [account("ann", "secret", ["http://one"]), account("bob", "", [])];
            compare(item("userNameBox").outText, "ann");
            compare(item("userNameBox").dropList, ["ann", "bob"]);
            mouseClick(item("loginButton"));
            compare(loginCtrl.calls[0], ["login", "ann", "secret", "http://one", ""]);
            compare(loginCtrl.calls[1], ["onResetCache", "ann", "secret", "http://one", "", true]);
        }

        function test_noAccountsEmptyTheUserName() {
            openWindow();
            loginWindow.userInfos = [account("ann", "secret", ["http://one"])];
            loginWindow.userInfos = [];
            compare(item("userNameBox").outText, "");
            compare(item("passwordField").text, "");
            compare(item("addressBox").outText, "http://default");
        }

        function test_pageLoadedAfterTheAccountsIsFilled() {
            openWindow();
            loginWindow.userInfos = [account("ann", "secret", ["http://one"])];
            item("contentLoader").source = loginWindow.compList["ValidComp"];
            item("contentLoader").source = loginWindow.compList["loginComp"];
            compare(item("loginComp").username, "ann");
            compare(item("passwordField").text, "secret");
            compare(item("addressBox").outText, "http://one");
        }

        function test_secondErrorGoesWithTheTimeOfTheFirst() {
            openWindow();
            mouseClick(item("loginButton"));
            compareError("用户名或密码输入为空！");
            fill("ann", "pw", "host");
            mouseClick(item("loginButton"));
            compareError("Editor 地址错误！");
            tryCompare(item("errorItem"), "visible", false);
        }
    }
}
