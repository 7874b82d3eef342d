import QtQuick 2.15

Item {
    width: 400
    height: 700

    UpdatePageTest {
        name: "CoverComp"

        function openInstallation() {
            openPage("CoverComp");
            verify(item("coverComp"));
        }

        function test_title() {
            openInstallation();
            const title = part("title");
            compare(title.text, "安装中");
            compare(String(title.color), "#ffffff");
            compare([title.font.pixelSize, title.font.bold], [18, true]);
            compareTitlePlace(title);
        }

        function test_titleFadesWithoutEnd() {
            openInstallation();
            updater.upgradeEnd();
            compareFading(part("title"));
        }

        function test_places() {
            openInstallation();
            const title = part("title");
            const bar = part("progress");
            compare([bar.x, bar.y, bar.width, bar.height], [26, title.y + title.height + 30, 288, 14]);
            const log = part("log");
            compare([log.x, log.width], [26, 288]);
            compare([log.y, log.y + log.height], [bar.y + bar.height + 20, 350 - 60]);
        }

        function test_startsEmpty() {
            openInstallation();
            compare([part("progress").from, part("progress").to, part("progress").value], [0, 1, 0]);
            compare(part("log").visible, false);
        }

        function test_barFollowsTheInstallation() {
            openInstallation();
            const bar = part("progress");
            updater.upgradeProcess(0.5);
            compare(bar.value, 0.5);
            updater.upgradeStart();
            compare(bar.value, 0);
            updater.upgradeProcess(0.05);
            fuzzyCompare(bar.value, 0.05, 1e-6);
            updater.upgradeProcess(0.9);
            fuzzyCompare(bar.value, 0.9, 1e-6);
            fuzzyCompare(findChild(bar, "filled").width, 0.9 * 288, 1e-3);
            updater.upgradeEnd();
            compare(bar.value, 1);
        }

        function test_infoAndErrorsAreLogged() {
            openInstallation();
            compareLogsInfoAndErrors();
        }

        function test_textsOfServicesAreNoRichText() {
            openInstallation();
            compareLogShowsMarksAsTheyAre();
        }

        function test_logLooks() {
            openInstallation();
            updater.readyUpdateInfo("x");
            compare(String(part("log").color), "#2f3243");
        }

        function test_longLogShowsItsEnd() {
            openInstallation();
            compareLogShowsItsEnd();
        }

        function test_errorsStayWhateverFollows() {
            openInstallation();
            updater.readyUpdateError("broken");
            updater.upgradeStart();
            updater.upgradeProcess(0.5);
            updater.upgradeEnd();
            compare(part("log").text, "broken<br/>");
            compare(part("log").visible, true);
        }
    }
}
