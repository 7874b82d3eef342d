import QtQuick 2.15
import QtTest 1.15

// The common part of the tests of the update pages.
PageTest {
    id: updatePageTest

    readonly property int patience: 30000
    property var opacities: []

    // Searches the visible page only: the previous page may still exist and has parts with the same names.
    function part(objectName) {
        return findChild(item("contentLoader").item, objectName);
    }

    // The page calls a function that LoginCtrl does not have. This causes a script error after the page change.
    function compareScriptError(page, missing) {
        const warnings = warningLog.take();
        compare(warnings.length, 1);
        verify(warnings[0].includes("/" + page + ".qml:"), warnings[0]);
        verify(warnings[0].includes("TypeError: Property '" + missing + "' of object LoginCtrl"), warnings[0]);
        compare(loginCtrl.calls, []);
        compare(updater.calls, []);
    }

    function compareTitlePlace(title) {
        compare(title.y, -80);
        fuzzyCompare(title.x + title.width / 2, 170, 0.5);
        const inWindow = title.mapToItem(loginWindow, 0, 0).y;
        verify(inWindow >= 32 && inWindow < 32 + 200);
        compare(title.font.family, "微软雅黑");
    }

    // The title fades out and in several times.
    function compareFading(title) {
        const animation = Array.from(title.resources).find(object => object.loops !== undefined);
        compare(animation.running, true);
        verify(animation.loops < 0); // Animation.Infinite reads back as another negative number
        compare(Array.from(animation.animations).map(step => [step.property, step.to, step.duration]),
                [["opacity", 0, 500], ["opacity", 1, 500]]);
        opacities = [];
        opacitySpy.target = title;
        tryVerify(() => opacities.filter(opacity => opacity === 0).length >= 3, patience);
        tryVerify(() => opacities.lastIndexOf(1) > opacities.lastIndexOf(0), patience);
        opacitySpy.target = null;
        verify(opacities.some(opacity => opacity > 0 && opacity < 1));
    }

    function plainText(panel) {
        const edit = findChild(panel, "edit");
        return edit.getText(0, edit.length);
    }

    // Rich text separates lines with U+2028 or U+2029.
    function lines(panel) {
        return plainText(panel).split(/[\u2028\u2029\n]/);
    }

    function compareLogsInfoAndErrors() {
        const log = part("log");
        compare(log.text, "");
        compare(log.visible, false);
        updater.readyUpdateInfo("下载失败Connection closed");
        compare(log.visible, true);
        compare(log.text, "下载失败Connection closed<br/>");
        updater.readyUpdateError("broken");
        updater.readyUpdateInfo("稍后将自动重启,请等待");
        compare(log.text, "下载失败Connection closed<br/>broken<br/>稍后将自动重启,请等待<br/>");
        compare(lines(log), ["下载失败Connection closed", "broken", "稍后将自动重启,请等待"]);
        const edit = findChild(log, "edit");
        compare(edit.readOnly, true);
        compare([edit.font.family, edit.font.pixelSize], ["微软雅黑", 12]);
    }

    // The log shows markup literally and loads nothing that it refers to.
    function compareLogShowsMarksAsTheyAre() {
        const texts = ["replied: <img src=\"qrc:/none.png\"><b>no</b>", "a & b &amp; &lt;c> <", "5 > 4"];
        updater.readyUpdateInfo(texts[0]);
        updater.readyUpdateError(texts[1]);
        updater.readyUpdateInfo(texts[2]);
        compare(lines(part("log")), texts);
        compare(warningLog.take(), []);
    }

    function compareLogShowsItsEnd() {
        const flickable = findChild(part("log"), "flickable");
        const log = count => {
            for (let i = 0; i < count; ++i)
                updater.readyUpdateInfo("line " + i);
        };
        log(3);
        compare(flickable.contentY, 0);
        log(60);
        tryVerify(() => flickable.contentHeight > flickable.height && flickable.atYEnd);
        compare(flickable.contentY, flickable.contentHeight - flickable.height);
        const bar = findChild(part("log"), "scrollBar");
        compare([bar.visible, bar.width, bar.contentItem.width], [true, 4, 4]);
    }

    Connections {
        id: opacitySpy

        target: null

        function onOpacityChanged() {
            updatePageTest.opacities.push(target.opacity);
        }
    }
}
