import QtQuick 2.15

Item {
    width: 400
    height: 700

    UpdatePageTest {
        name: "DownloadComp"

        readonly property int megabyte: 1024 * 1024

        function openDownload() {
            openPage("DownloadComp");
            verify(item("downloadComp"));
        }

        function progressed(received, total) {
            return "<font color='#50bcd8'>" + received + "</font><font color='#ffffff'>/" + total + " MB</font>";
        }

        function test_title() {
            openDownload();
            const title = part("title");
            compare(title.text, "正在下载");
            compare(String(title.color), "#50bcd8");
            compare(title.font.pixelSize, 14);
            compareTitlePlace(title);
        }

        function test_titleFadesWithoutEnd() {
            openDownload();
            compareFading(part("title"));
        }

        function test_titleStandsStillOnceFinished() {
            openDownload();
            const title = part("title");
            tryVerify(() => title.opacity < 1);
            updater.downloadFinished("/tmp/p.zip");
            compare(title.text, "下载完成");
            compareTitlePlace(title);
            compare(title.fading, false);
            compare(title.opacity, 1);
            opacities = [];
            title.opacityChanged.connect(() => opacities.push(title.opacity));
            wait(200);
            compare(opacities, []);
        }

        function test_places() {
            openDownload();
            const title = part("title");
            const bar = part("progress");
            compare([bar.x, bar.y, bar.width, bar.height], [26, title.y + title.height + 30, 288, 14]);
            const button = part("installButton");
            compare([button.x, button.y, button.width, button.height], [26, 350 - 40 - 36, 288, 36]);
            const log = part("log");
            compare([log.x, log.width], [26, 288]);
            const text = part("progressText");
            compare([text.x + text.width, text.y], [26 + 288, bar.y + bar.height + 6]);
            compare([log.y, log.y + log.height], [text.y + text.height + 14, button.y - 20]);
        }

        function test_beforeTheStart() {
            openDownload();
            compare(item("downloadComp").downloadFinished, false);
            compare(part("progressText").text, "");
            compare([part("progress").from, part("progress").to, part("progress").value], [0, 1, 0]);
            compare(part("log").visible, false);
        }

        function test_progressTextStandsRightUnderTheBar() {
            openDownload();
            updater.downloadStarted("/tmp/p.zip", 10 * megabyte);
            const text = part("progressText");
            compare(text.font.pixelSize, 14);
            compare(text.font.family, "微软雅黑");
            compare(text.horizontalAlignment, Text.AlignRight);
            const check = () => {
                compare(text.x + text.width, 26 + 288);
                verify(text.width > 0 && text.width < 288);
                const gap = text.y - part("progress").y - 14;
                verify(gap >= 0 && gap < 14);
            };
            check();
            updater.downloadProgress("/tmp/p.zip", 5 * megabyte, 10 * megabyte);
            check();
        }

        function test_startNamesTheSize_data() {
            return [
                { tag: "ten", total: 10 * megabyte, text: "0/10.00 MB" },
                { tag: "a half", total: 2.5 * megabyte, text: "0/2.50 MB" },
                { tag: "rounded down", total: 1234567, text: "0/1.18 MB" },
                { tag: "rounded up", total: 1048576 + 5243, text: "0/1.01 MB" },
                { tag: "one byte", total: 1, text: "0/0.00 MB" },
                { tag: "unknown", total: 0, text: "0/0.00 MB" },
                { tag: "beyond 32 bits", total: 5 * 1024 * megabyte, text: "0/5120.00 MB" }
            ];
        }

        function test_startNamesTheSize(data) {
            openDownload();
            updater.downloadStarted("/tmp/p.zip", data.total);
            compare(part("progressText").text, data.text);
        }

        function test_barIsFullFromTheStartToTheFirstProgress() {
            openDownload();
            updater.downloadStarted("/tmp/p.zip", 10 * megabyte);
            const bar = part("progress");
            compare([bar.to, bar.value, bar.visualPosition], [1, 1, 1]);
            compare(findChild(bar, "filled").width, 288);
            wait(100);
            compare(bar.value, 1);
            updater.downloadProgress("/tmp/p.zip", 1 * megabyte, 10 * megabyte);
            fuzzyCompare(bar.value, 0.1, 1e-9);
            fuzzyCompare(findChild(bar, "filled").width, 28.8, 1e-6);
        }

        function test_progress_data() {
            const gigabyte = 1024 * megabyte;
            return [
                { tag: "nothing yet", received: 0, total: 4 * megabyte, value: 0,
                  text: progressed("0.00", "4.00") },
                { tag: "a quarter", received: megabyte, total: 4 * megabyte, value: 0.25,
                  text: progressed("1.00", "4.00") },
                { tag: "two decimals", received: 1234567, total: 7654321, value: 1234567 / 7654321,
                  text: progressed("1.18", "7.30") },
                { tag: "all", received: 4 * megabyte, total: 4 * megabyte, value: 1,
                  text: progressed("4.00", "4.00") },
                { tag: "beyond 32 bits", received: 3 * gigabyte, total: 6 * gigabyte, value: 0.5,
                  text: progressed("3072.00", "6144.00") },
                { tag: "more than announced", received: 6 * megabyte, total: 4 * megabyte, value: 1,
                  text: progressed("6.00", "4.00") },
                { tag: "of an unknown size", received: megabyte, total: 0, value: 1,
                  text: progressed("1.00", "0.00") },
                { tag: "nothing of an unknown size", received: 0, total: 0, value: 0,
                  text: progressed("0.00", "0.00") }
            ];
        }

        function test_progress(data) {
            openDownload();
            updater.downloadProgress("/tmp/p.zip", data.received, data.total);
            compare(part("progressText").text, data.text);
            fuzzyCompare(part("progress").value, data.value, 1e-9);
        }

        function test_progressTextIsColoured() {
            openDownload();
            updater.downloadProgress("/tmp/p.zip", 4 * megabyte, 8 * megabyte);
            const text = part("progressText");
            const corner = text.mapToItem(loginWindow, 0, 0);
            const image = grabImage(loginWindow);
            let accent = false;
            let white = false;
            for (let x = corner.x; x < corner.x + text.width; ++x) {
                for (let y = corner.y; y < corner.y + text.height; ++y) {
                    const [red, blue] = [image.red(x, y), image.blue(x, y)];
                    accent = accent || blue - red > 80;
                    white = white || red > 160;
                }
            }
            compare([accent, white], [true, true]);
        }

        function test_secondStartFillsTheBarAgain() {
            openDownload();
            updater.downloadStarted("/tmp/p.zip", 10 * megabyte);
            updater.downloadProgress("/tmp/p.zip", megabyte, 10 * megabyte);
            updater.downloadStarted("/tmp/p.zip", 10 * megabyte);
            compare(part("progress").value, 1);
            compare(part("progressText").text, "0/10.00 MB");
        }

        function test_startAndEndAreLoggedWithThePath() {
            openDownload();
            updater.downloadStarted("/tmp/a b/包.zip", 1);
            updater.downloadProgress("/tmp/a b/包.zip", 1, 1);
            updater.downloadFinished("/tmp/a b/包.zip");
            compare(warningLog.debugs(), ["onDownloadStarted /tmp/a b/包.zip",
                                          "onDownloadFinished /tmp/a b/包.zip"]);
            compare(part("log").text, "");
        }

        function test_infoAndErrorsAreLogged() {
            openDownload();
            compareLogsInfoAndErrors();
        }

        function test_textsOfServicesAreNoRichText() {
            openDownload();
            compareLogShowsMarksAsTheyAre();
        }

        function test_logLooks() {
            openDownload();
            updater.readyUpdateInfo("x");
            const log = part("log");
            compare(log.border.width, 1);
            compare([log.color, log.border.color].map(String), ["#00000000", "#808080"]);
        }

        function test_longLogShowsItsEnd() {
            openDownload();
            compareLogShowsItsEnd();
        }

        function test_errorsStayWhateverFollows() {
            openDownload();
            updater.readyUpdateError("broken");
            updater.downloadStarted("/tmp/p.zip", megabyte);
            updater.downloadProgress("/tmp/p.zip", megabyte, megabyte);
            updater.downloadFinished("/tmp/p.zip");
            compare(part("log").text, "broken<br/>");
            compare(part("log").visible, true);
        }

        function test_errorLeavesTheDownloadUnfinished() {
            openDownload();
            updater.readyUpdateError("broken");
            compare(item("downloadComp").downloadFinished, false);
            compare(part("title").text, "正在下载");
            compare(part("installButton").enabled, false);
        }

        function test_installWaitsForTheEndOfTheDownload() {
            openDownload();
            const button = part("installButton");
            compare(button.text, "安装");
            updater.downloadStarted("/tmp/p.zip", megabyte);
            updater.downloadProgress("/tmp/p.zip", megabyte, megabyte);
            compare([button.enabled, button.opacity], [false, 0.3]);
            mouseMove(button, 50, 10);
            compare(button.glowVisible, false);
            mouseClick(button);
            compare(item("contentLoader").source, loginWindow.compList["DownloadComp"]);
            updater.downloadFinished("/tmp/p.zip");
            compare([button.enabled, button.opacity], [true, 1]);
        }

        function test_endWithoutAStartShowsNoSize() {
            openDownload();
            updater.downloadFinished("/tmp/p.zip");
            compare(item("downloadComp").downloadFinished, true);
            compare(part("progressText").text, "");
            compare(part("progress").value, 0);
            compare(part("installButton").enabled, true);
        }

        function test_installingShowsTheInstallationBeforeTheCallFails() {
            openDownload();
            updater.downloadFinished("/tmp/p.zip");
            mouseClick(part("installButton"));
            compareScriptError("DownloadComp", "upgrade");
            compare(item("contentLoader").source, loginWindow.compList["CoverComp"]);
            verify(item("coverComp"));
            tryVerify(() => !item("downloadComp"));
            compare(item("coverComp").activeFocus, true);
        }
    }
}
