import QtQuick 2.15

Item {
    width: 400
    height: 700

    UpdatePageTest {
        name: "UpdateComp"

        function openOffer(version, notes) {
            updater.latestVersion = version;
            updater.changeLog = notes;
            openPage("UpdateComp");
            verify(item("updateComp"));
        }

        function edit() {
            return findChild(part("releaseNotes"), "edit");
        }

        function test_title() {
            openOffer("1.0.1", "");
            const title = part("title");
            compare(title.text, "检测到新版本！");
            compare(String(title.color), "#50bcd8");
            compare(title.font.pixelSize, 14);
            compare(title.font.bold, false);
            compareTitlePlace(title);
        }

        function test_titleStaysAsItIs() {
            openOffer("1.0.1", "");
            const title = part("title");
            compare(title.fading, false);
            compare(title.opacity, 1);
        }

        function test_notesNameTheVersionAndWhatIsNew() {
            openOffer("1.0.1", "faster<br/>finer");
            compare(part("releaseNotes").text, "1.0.1<br/> 更新内容: <br/>faster<br/>finer");
            compare(edit().textFormat, TextEdit.RichText);
            compare(lines(part("releaseNotes")).map(line => line.trim()),
                    ["1.0.1", "更新内容:", "faster", "finer"]);
        }

        function test_versionIsNoRichText() {
            openOffer("<b>1</b>&lt;<img src=\"qrc:/none.png\">", "<i>finer</i>");
            compare(lines(part("releaseNotes")).map(line => line.trim()),
                    ["<b>1</b>&lt;<img src=\"qrc:/none.png\">", "更新内容:", "finer"]);
            compare(warningLog.take(), []);
        }

        function test_notesWithoutAnything() {
            openOffer("", "");
            compare(part("releaseNotes").text, "<br/> 更新内容: <br/>");
        }

        function test_notesFollowTheUpdater() {
            openOffer("1.0.1", "old");
            updater.latestVersion = "1.0.2";
            compare(part("releaseNotes").text, "1.0.2<br/> 更新内容: <br/>old");
            updater.changeLog = "<b>new</b>";
            compare(part("releaseNotes").text, "1.0.2<br/> 更新内容: <br/><b>new</b>");
            compare(lines(part("releaseNotes"))[2], "new");
        }

        function test_notesLooks() {
            openOffer("1.0.1", "");
            compare(String(part("releaseNotes").color), "#2f3243");
            const notes = part("releaseNotes");
            const text = findChild(notes, "flickable");
            compare([text.x, text.y, notes.width - text.x - text.width, notes.height - text.y - text.height],
                    [10, 10, 14, 10]);
            compare([text.clip, text.boundsBehavior], [true, Flickable.StopAtBounds]);
            const bar = findChild(notes, "scrollBar");
            compare([notes.width - bar.x - bar.width, bar.y, bar.height], [5, text.y, text.height]);
            compare(String(edit().color), "#ffffff");
            compare(edit().font.pixelSize, 14);
            compare(edit().font.family, "微软雅黑");
        }

        function test_notesStandBetweenTheTitleAndTheButtons() {
            openOffer("1.0.1", "");
            const notes = part("releaseNotes");
            compare([notes.x, notes.width], [26, 288]);
            compare(notes.y, part("title").y + part("title").height + 30);
            compare(notes.y + notes.height, part("buttons").y - 20);
        }

        function test_notesCanBeSelectedButNotChanged() {
            openOffer("1.0.1", "unbroken");
            const notes = edit();
            compare([notes.readOnly, notes.selectByMouse], [true, true]);
            compare([notes.selectedTextColor, notes.selectionColor].map(String),
                    [String(Qt.darker("lightblue", 1)), "#255187"]);
            mouseDoubleClickSequence(notes, 10, notes.height - 8);
            compare(notes.selectedText, "unbroken");
            const before = plainText(part("releaseNotes"));
            keyClick(Qt.Key_Delete);
            type("x");
            compare(plainText(part("releaseNotes")), before);
        }

        function test_draggingSelectsAndDoesNotScroll() {
            openOffer("1.0.1", "line<br/>".repeat(60));
            const notes = edit();
            mousePress(notes, 2, 8);
            mouseMove(notes, 40, 60);
            mouseMove(notes, 60, 120);
            mouseRelease(notes, 60, 120);
            verify(notes.selectedText.includes("line"));
            compare(findChild(part("releaseNotes"), "flickable").contentY, 0);
        }

        function test_shortNotesHaveNoScrollBar() {
            openOffer("1.0.1", "short");
            compare(findChild(part("releaseNotes"), "scrollBar").visible, false);
        }

        function test_longNotesScrollFromTheirBeginning() {
            openOffer("1.0.1", "line<br/>".repeat(60));
            const flickable = findChild(part("releaseNotes"), "flickable");
            compare(findChild(part("releaseNotes"), "scrollBar").visible, true);
            compare(flickable.contentY, 0);
            mouseWheel(flickable, 50, 50, 0, -1200);
            tryVerify(() => flickable.contentY > 0);
        }

        function test_scrollBarMovesTheNotes() {
            openOffer("1.0.1", "line<br/>".repeat(60));
            const flickable = findChild(part("releaseNotes"), "flickable");
            const bar = findChild(part("releaseNotes"), "scrollBar");
            mousePress(bar, 2, 5);
            mouseMove(bar, 2, 60);
            mouseMove(bar, 2, 120);
            tryVerify(() => flickable.contentY > 0);
            mouseRelease(bar, 2, 120);
        }

        function test_wideNotesAreBrokenAndNeverScrollSideways() {
            openOffer("1.0.1", "w".repeat(400));
            const flickable = findChild(part("releaseNotes"), "flickable");
            compare(flickable.contentWidth, flickable.width);
            verify(edit().contentWidth <= edit().width);
            compare(flickable.flickableDirection, Flickable.VerticalFlick);
            mouseWheel(flickable, 50, 50, -1200, 0);
            wait(0);
            compare(flickable.contentX, 0);
        }

        function test_buttonPlaces() {
            openOffer("1.0.1", "");
            const row = part("buttons");
            compare([row.x, row.y, row.width, row.height], [26, 350 - 40 - 36, 288, 36]);
            const skip = part("skipButton");
            compare([skip.x, skip.y, skip.width, skip.height], [4, 0, 288 / 2 - 18, 36]);
            const upgrade = part("upgradeButton");
            compare([upgrade.x, upgrade.y, upgrade.width, upgrade.height],
                    [288 / 2 + 14, 0, 288 / 2 - 18, 36]);
        }

        function test_skipButtonIsFlatAndAlwaysGlows() {
            openOffer("1.0.1", "");
            mouseMove(loginWindow, 5, 400);
            const skip = part("skipButton");
            compare(skip.text, "跳过");
            compare(String(skip.gradientStartColor), "#272937");
            compare(String(skip.gradientMidColor), "#272937");
            compare(String(skip.gradientStopColor), "#272937");
            compare(String(skip.glowColor), "#2996b3");
            compare(String(skip.textColor), "#2996b3");
            compare(skip.glowVisible, true);
            compare(findChild(skip, "glow").visible, true);
            compare(String(findChild(skip, "glow").item.color), "#2996b3");
            mouseMove(skip, 20, 10);
            mouseMove(loginWindow, 5, 400);
            compare(skip.glowVisible, true);
        }

        function test_upgradeButtonHasTheDefaultColours() {
            openOffer("1.0.1", "");
            mouseMove(loginWindow, 5, 400);
            const upgrade = part("upgradeButton");
            compare(upgrade.text, "升级");
            compare(String(upgrade.gradientStartColor), "#2997b4");
            compare(String(upgrade.gradientMidColor), "#277ca3");
            compare(String(upgrade.gradientStopColor), "#255187");
            compare(String(upgrade.glowColor), "#8397ff");
            compare(String(upgrade.textColor), "#ffffff");
            compare(upgrade.glowVisible, false);
        }

        function test_skippingGoesOnWithTheSignIn() {
            openOffer("1.0.1", "");
            mouseClick(part("skipButton"));
            compare(item("contentLoader").source, loginWindow.compList["ValidComp"]);
            verify(item("validComp"));
            compare(updater.calls, []);
        }

        function test_upgradingShowsTheDownloadBeforeTheCallFails() {
            openOffer("1.0.1", "");
            mouseClick(part("upgradeButton"));
            compareScriptError("UpdateComp", "download");
            compare(item("contentLoader").source, loginWindow.compList["DownloadComp"]);
            verify(item("downloadComp"));
            tryVerify(() => !item("updateComp"));
            compare(item("downloadComp").activeFocus, true);
        }
    }
}
