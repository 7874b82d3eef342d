import QtQuick 2.15
import "qrc:/NelvoPlugin/qmls/FuncComp"

Item {
    id: stage

    width: 400
    height: 700

    Component {
        id: errorText

        ErrorItem {
            width: 100
        }
    }

    // Times are compared by the order in which timers fire, which a busy machine does not change.
    Timer {
        id: clock

        property bool over: false

        onTriggered: over = true

        function begin(time) {
            stop();
            over = false;
            interval = time;
            start();
        }
    }

    PageTest {
        name: "ErrorItem"

        function test_defaults() {
            const item = createTemporaryObject(errorText, stage);
            compare(item.visible, false);
            compare(item.text, "");
            compare(String(item.color), "#1473e6");
            compare(item.font.family, "微软雅黑");
            compare(item.font.pixelSize, 12);
            compare(item.verticalAlignment, Text.AlignBottom);
            compare(item.wrapMode, Text.Wrap);
            compare(item.resources[0].interval, 1500);
            compare(item.resources[0].repeat, false);
        }

        function test_hidesItselfAfterItsTime() {
            const item = createTemporaryObject(errorText, stage);
            clock.begin(1000);
            item.visible = true;
            tryCompare(clock, "over", true);
            compare(item.visible, true);
            clock.begin(5000);
            tryCompare(item, "visible", false);
            compare(clock.over, false);
        }

        function test_secondTextGoesWithTheTimeOfTheFirst() {
            const item = createTemporaryObject(errorText, stage, { text: "first" });
            clock.begin(750);
            item.visible = true;
            tryCompare(clock, "over", true);
            compare(item.visible, true);
            item.text = "second";
            item.visible = true;
            clock.begin(1200);
            tryCompare(item, "visible", false);
            compare(clock.over, false);
            compare(item.text, "second");
        }

        function test_hasItsFullTimeAgainWhenShownAgain() {
            const item = createTemporaryObject(errorText, stage);
            item.visible = true;
            tryCompare(item, "visible", false);
            clock.begin(1000);
            item.visible = true;
            tryCompare(clock, "over", true);
            compare(item.visible, true);
            tryCompare(item, "visible", false);
        }

        function test_markupIsShownAsItComes() {
            const item = createTemporaryObject(errorText, stage, { text: "<b>text</b>" });
            compare(item.textFormat, Text.PlainText);
        }
    }
}
