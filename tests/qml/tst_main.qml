import QtQuick 2.15

Item {
    width: 400
    height: 700

    UpdatePageTest {
        name: "Main"

        function pageUrl(name) {
            return "qrc:/NelvoPlugin/qmls/BizComp/" + name + ".qml";
        }

        function test_properties() {
            openWindow();
            compare(loginWindow.logo, picture("nelvo.png"));
            compare(loginWindow.cimServer, "");
            compare(loginWindow.pdsServer, "");
            compare(loginWindow.keep, false);
            compare(loginWindow.userList, []);
            compare(loginWindow.userInfos, undefined);
            compare([loginWindow.width, loginWindow.height], [340, 642]);
        }

        function test_compListNamesEveryPage() {
            openWindow();
            compare(loginWindow.compList, {
                loginComp: pageUrl("LoginComp"),
                AppListComp: pageUrl("ApplistComp"),
                DownloadComp: pageUrl("DownloadComp"),
                UpdateComp: pageUrl("UpdateComp"),
                ValidComp: pageUrl("ValidComp"),
                CoverComp: pageUrl("CoverComp")
            });
        }

        function test_frame() {
            openWindow();
            const loader = item("contentLoader");
            compare([loader.x, loader.y], [0, 32 + 200 + 60]);
            compare([loader.width, loader.height], [340, 642 - 292]);
            const logo = item("logoImage");
            compare(logo.source, picture("nelvo.png"));
            compare([logo.width, logo.height], [264, 156]);
            compare(logo.mapToItem(loginWindow, 0, 0), Qt.point((340 - 264) / 2, 32 + (200 - 156) / 2));
            compare(logo.status, Image.Ready);
            loginWindow.logo = picture("C.png");
            compare([logo.width, logo.height], [264, 156]);
        }

        function test_textsAreDrawnAsTheSystemDrawsThem_data() {
            return ["loginComp", "AppListComp", "DownloadComp", "UpdateComp", "ValidComp", "CoverComp"]
                .map(page => ({ tag: page }));
        }

        function test_textsAreDrawnAsTheSystemDrawsThem(data) {
            loginCtrl.appList = [{ enterpriseId: 1, enterpriseName: "Acme" },
                                 { enterpriseId: 2, enterpriseName: "Bolt" }];
            openPage(data.tag);
            const drawnOtherwise = child => {
                const own = child.renderType !== undefined && child.renderType !== Text.NativeRendering ? [child] : [];
                return Array.from(child.children).reduce((found, next) => found.concat(drawnOtherwise(next)), own);
            };
            compare(drawnOtherwise(loginWindow).map(text => text + " " + text.text), []);
        }

        function test_accountsGiveTheUserListInOrder() {
            openWindow();
            loginWindow.userInfos = ["bob", "ann", "bob"].map(user => account(user, "", []));
            compare(loginWindow.userList, ["bob", "ann", "bob"]);
            loginWindow.userInfos = [];
            compare(loginWindow.userList, []);
        }

        function test_startsOnTheForm() {
            openWindow();
            compare(item("contentLoader").source, pageUrl("LoginComp"));
        }

        function test_eachPageGetsTheFocus() {
            openWindow();
            for (const key of ["AppListComp", "UpdateComp", "DownloadComp", "CoverComp", "ValidComp",
                               "loginComp"]) {
                item("contentLoader").source = loginWindow.compList[key];
                compare(item("contentLoader").item.activeFocus, true);
            }
        }

        function test_needUpdateReplacesThePage_data() {
            return [{ tag: "loginComp" }, { tag: "AppListComp" }];
        }

        function test_needUpdateReplacesThePage(data) {
            openPage(data.tag);
            updater.needUpdate(false);
            compare(item("contentLoader").source, pageUrl("ValidComp"));
            verify(item("validComp"));
        }

        function test_needUpdateReplacesTheFormInTheMiddleOfIt() {
            openWindow();
            type("ann");
            updater.needUpdate(false);
            verify(item("validComp"));
            tryVerify(() => !item("loginComp"));
        }

        function test_needUpdateTrueLoadsTheUpdatePage() {
            openWindow();
            updater.needUpdate(true);
            compare(item("contentLoader").source, pageUrl("UpdateComp"));
            verify(item("updateComp"));
        }

        function test_needUpdateReplacesAnUpdatePageToo_data() {
            return [{ tag: "UpdateComp" }, { tag: "DownloadComp" }, { tag: "CoverComp" }];
        }

        function test_needUpdateReplacesAnUpdatePageToo(data) {
            openPage(data.tag);
            updater.needUpdate(false);
            verify(item("validComp"));
            updater.needUpdate(true);
            verify(item("updateComp"));
        }

        function test_needUpdateWhileTheSignInWaits() {
            openWindow();
            loginWindow.userInfos = [account("ann", "secret", [])];
            during.login = () => {
                updater.needUpdate(false);
                wait(0);
                verify(item("loginComp"));
            };
            keyClick(Qt.Key_Return);
            // The page still stores the account that has signed in.
            compare(loginCtrl.calls, [["login", "ann", "secret", "http://default", ""],
                                      ["onResetCache", "ann", "secret", "http://default", "", true]]);
            compare(item("contentLoader").source, pageUrl("ValidComp"));
            compare(loginWindow.cimServer, "http://default");
            // The next sign-in ends without a request for an update.
            loginWindow.replacePage("loginComp");
            keyClick(Qt.Key_Return);
            compare(item("contentLoader").source, pageUrl("ApplistComp"));
        }

        function test_needUpdateWhileTheEnterpriseIsEntered() {
            openWindow();
            loginCtrl.appList = [{ enterpriseId: 1, enterpriseName: "Acme" }];
            during.onLogin = () => {
                updater.needUpdate(true);
                wait(0);
            };
            item("contentLoader").source = loginWindow.compList["AppListComp"];
            tryVerify(() => loginCtrl.calls.length > 0);
            compare(loginCtrl.calls, [["onLogin", "", "1", "Acme"]]);
            compare(item("contentLoader").source, pageUrl("UpdateComp"));
            verify(item("updateComp"));
        }

        function test_wholeFlow() {
            openWindow();
            loginWindow.userInfos = [account("ann", "secret", ["http://one"])];
            loginCtrl.appList = [{ enterpriseId: 1, enterpriseName: "Acme" },
                                 { enterpriseId: 2, enterpriseName: "Bolt" }];
            mouseClick(item("loginButton"));
            verify(item("applistComp"));
            tryVerify(() => item("companyList").itemAtIndex(1));
            mouseClick(item("companyList").itemAtIndex(1));
            mouseClick(item("confirmButton"));
            verify(item("validComp"));
            tryVerify(() => loginCtrl.calls.length === 4);
            compare(loginCtrl.calls, [
                ["login", "ann", "secret", "http://one", ""],
                ["onResetCache", "ann", "secret", "http://one", "", true],
                ["onLogin", "http://one", "2", "Bolt"],
                ["onShowHome"]
            ]);
        }

        function test_flowOfASkippedUpdate() {
            openWindow();
            updater.latestVersion = "1.0.1";
            updater.needUpdate(true);
            mouseClick(part("skipButton"));
            tryVerify(() => loginCtrl.calls.length > 0);
            compare(loginCtrl.calls, [["onShowHome"]]);
            compare(updater.calls, []);
        }

        function test_flowOfAnUpdate() {
            openWindow();
            updater.latestVersion = "1.0.1";
            updater.needUpdate(true);
            mouseClick(part("upgradeButton"));
            compareScriptError("UpdateComp", "download");

            updater.downloadStarted("/tmp/p.zip", 100);
            updater.downloadProgress("/tmp/p.zip", 100, 100);
            updater.downloadFinished("/tmp/p.zip");
            mouseClick(part("installButton"));
            compareScriptError("DownloadComp", "upgrade");

            updater.upgradeStart();
            updater.upgradeProcess(0.05);
            updater.readyUpdateInfo("稍后将自动重启,请等待");
            updater.upgradeEnd();
            compare(part("progress").value, 1);
            compare(part("log").text, "稍后将自动重启,请等待<br/>");
        }
    }
}
