import QtQuick 2.15
import QtQuick.Window 2.15

// Use of the pages with the keyboard only.
Item {
    width: 400
    height: 700

    PageTest {
        name: "Keyboard"

        function focused() {
            return loginWindow.Window.activeFocusItem;
        }

        function frames(item) {
            const own = item.objectName === "focusFrame" && item.visible ? [item] : [];
            return Array.from(item.children).reduce((found, child) => found.concat(frames(child)), own);
        }

        // Moves the focus until a control repeats and returns the names of the controls. Each shows one outline.
        function walk(key, modifier) {
            const names = [];
            for (;;) {
                keyClick(key, modifier);
                const name = focused().Accessible.name;
                if (names.includes(name))
                    return names;
                compare(frames(loginWindow).length, 1, name);
                names.push(name);
            }
        }

        function tabTo(name) {
            for (let i = 0; i < 10 && focused().Accessible.name !== name; ++i)
                keyClick(Qt.Key_Tab);
            compare(focused().Accessible.name, name);
        }

        function openList() {
            loginCtrl.appList = [{ enterpriseId: 1, enterpriseName: "Acme" },
                                 { enterpriseId: 2, enterpriseName: "Bolt" }];
            openPage("AppListComp");
            tryVerify(() => item("companyList").itemAtIndex(1));
        }

        function openDownload() {
            openPage("DownloadComp");
            updater.readyUpdateInfo("ready");
            updater.downloadFinished("/tmp/p.zip");
        }

        function test_tabFollowsTheReadingOrder_data() {
            return [
                { tag: "LoginComp", open: openWindow,
                  stops: ["密码", "Nelvo服务器地址", "记住密码", "登录", "关闭", "用户名"] },
                { tag: "AppListComp", open: openList, stops: ["选择企业:", "Acme", "关闭"] },
                { tag: "AppListComp, no enterprises", open: () => openPage("AppListComp"), stops: ["选择企业:", "关闭"] },
                { tag: "UpdateComp", open: () => openPage("UpdateComp"), stops: ["更新内容", "跳过", "升级", "关闭"] },
                { tag: "DownloadComp, waiting", open: () => openPage("DownloadComp"), stops: ["关闭"] },
                { tag: "DownloadComp, finished", open: openDownload, stops: ["更新日志", "安装", "关闭"] },
                { tag: "CoverComp", open: () => openPage("CoverComp"), stops: ["关闭"] }
            ];
        }

        function test_tabFollowsTheReadingOrder(data) {
            data.open();
            compare(frames(loginWindow), []);
            compare(walk(Qt.Key_Tab, Qt.NoModifier), data.stops);
            // The walk ended on its first control, so the backward walk starts with the last one.
            const backwards = data.stops.slice(1).reverse().concat(data.stops[0]);
            compare(walk(Qt.Key_Backtab, Qt.ShiftModifier), backwards);
        }

        function test_mouseShowsNoOutline() {
            openWindow();
            for (const name of ["userNameBox", "passwordField", "addressBox", "keepPassword", "loginButton"]) {
                mouseClick(item(name), 60, 8);
                compare(frames(loginWindow), [], name);
            }
            keyClick(Qt.Key_Tab);
            compare(frames(loginWindow).length, 1);
            mouseClick(item("passwordField"), 60, 8);
            compare(frames(loginWindow), []);
        }

        function test_outlineChangesNoPlace() {
            openWindow();
            const button = item("loginButton");
            const before = [button.x, button.y, button.width, button.height];
            tabTo("登录");
            compare([button.x, button.y, button.width, button.height], before);
        }

        function test_outlineSurroundsTheControl_data() {
            return [{ tag: "symbol: close", name: "关闭", margin: 3 }, { tag: "symbol: fold", name: "选择企业:", margin: 3 },
                    { tag: "row", name: "Acme", margin: 0 }];
        }

        function test_outlineSurroundsTheControl(data) {
            openList();
            tabTo(data.name);
            const control = focused().parent;
            const outline = frames(control)[0];
            compare([outline.x, outline.y, outline.width, outline.height],
                    [-data.margin, -data.margin, control.width + 2 * data.margin, control.height + 2 * data.margin]);
            compare([outline.color, outline.border.color].map(String), ["#00000000", "#ffffff"]);
            compare(outline.border.width, 2);
        }

        function test_keysPressAButton_data() {
            return [{ tag: "Space", key: Qt.Key_Space }, { tag: "Return", key: Qt.Key_Return },
                    { tag: "Enter", key: Qt.Key_Enter }];
        }

        function test_keysPressAButton(data) {
            openPage("UpdateComp");
            tabTo("跳过");
            keyClick(data.key);
            verify(item("validComp"));
        }

        function test_spacePressesOnReleaseOnly() {
            openList();
            tabTo("选择企业:");
            keyRelease(Qt.Key_Space);
            compare(item("foldImage").open, true);
            keyPress(Qt.Key_Space);
            compare(item("foldImage").open, true);
            keyRelease(Qt.Key_Space);
            compare(item("foldImage").open, false);
            keyRelease(Qt.Key_Space);
            compare(item("foldImage").open, false);
            // The release belongs to another control than the press.
            keyPress(Qt.Key_Space);
            keyClick(Qt.Key_Tab);
            keyClick(Qt.Key_Backtab, Qt.ShiftModifier);
            compare(focused().Accessible.name, "选择企业:");
            keyRelease(Qt.Key_Space);
            compare(item("foldImage").open, false);
        }

        function test_keysOnTheSignInButtonSignInOnce_data() {
            return test_keysPressAButton_data();
        }

        function test_keysOnTheSignInButtonSignInOnce(data) {
            openWindow();
            loginCtrl.answer = "refused";
            loginWindow.userInfos = [account("ann", "secret", [])];
            tabTo("登录");
            during.login = () => keyClick(data.key);
            keyClick(data.key);
            compare(loginCtrl.calls, [["login", "ann", "secret", "http://default", ""]]);
        }

        function test_backtabFromThePageLeadsToTheTitleBar() {
            openPage("UpdateComp");
            keyClick(Qt.Key_Backtab, Qt.ShiftModifier);
            compare(focused().Accessible.name, "关闭");
        }

        function test_enterpriseIsChosenByKeyboard_data() {
            return test_keysPressAButton_data();
        }

        function test_enterpriseIsChosenByKeyboard(data) {
            openList();
            tabTo("Acme");
            keyClick(Qt.Key_Down);
            compare(focused().Accessible.name, "Bolt");
            compare(frames(loginWindow).length, 1);
            keyClick(data.key);
            compare(item("applistComp").selIndex1, 1);
            compare(loginCtrl.calls, []);
            keyClick(Qt.Key_Tab);
            compare(focused().Accessible.name, "确定");
            keyClick(data.key);
            compare(loginCtrl.calls, [["onLogin", "", "2", "Bolt"]]);
        }

        function test_listMayBecomeEmptyWhileARowHasTheFocus() {
            openList();
            tabTo("Acme");
            loginCtrl.appList = [];
            tryCompare(item("companyList"), "count", 0);
        }

        function test_listIsFoldedByKeyboard() {
            openList();
            tabTo("选择企业:");
            const fold = focused();
            compare(fold.Accessible.description, "折叠");
            keyClick(Qt.Key_Space);
            compare(item("companyList").visible, false);
            compare(fold.Accessible.description, "展开");
            keyClick(Qt.Key_Tab);
            compare(focused().Accessible.name, "关闭");
        }

        function test_keysChangeNothingWhileTheEnterpriseIsEntered_data() {
            return [{ tag: "on the row", name: "Bolt" }, { tag: "on the fold button", name: "选择企业:" }];
        }

        function test_keysChangeNothingWhileTheEnterpriseIsEntered(data) {
            openList();
            item("applistComp").select(0);
            if (data.name === "Bolt") {
                tabTo("Acme");
                keyClick(Qt.Key_Down);
            }
            else
                tabTo(data.name);
            const seen = [];
            during.onLogin = () => {
                for (const key of [Qt.Key_Space, Qt.Key_Return]) {
                    keyClick(key);
                    seen.push([item("applistComp").selIndex1, item("foldImage").open]);
                }
            };
            mouseClick(item("confirmButton"));
            compare(seen, [[0, true], [0, true]]);
            compare(loginCtrl.calls.length, 1);
        }

        function test_longTextScrollsByKeyboard() {
            updater.changeLog = "line<br/>".repeat(60);
            openPage("UpdateComp");
            const text = findChild(item("releaseNotes"), "flickable");
            tabTo("更新内容");
            keyClick(Qt.Key_Down);
            compare(text.contentY, 20);
            keyClick(Qt.Key_PageDown);
            compare(text.contentY, 20 + text.height);
            for (let i = 0; i < 10; ++i)
                keyClick(Qt.Key_PageDown);
            compare(text.contentY, text.contentHeight - text.height);
            text.contentY = 20 + text.height;
            keyClick(Qt.Key_Up);
            compare(text.contentY, text.height);
            keyClick(Qt.Key_PageUp);
            compare(text.contentY, 0);
            keyClick(Qt.Key_Up);
            compare(text.contentY, 0);
        }

        function test_installsByKeyboard() {
            openDownload();
            tabTo("安装");
            keyClick(Qt.Key_Return);
            verify(item("coverComp"));
            // The page calls a function that loginCtrl does not have.
            compare(warningLog.take().length, 1);
        }
    }
}
