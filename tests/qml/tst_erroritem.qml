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

    // The tests record events when they happen, because a busy machine may check late. Timers that are due at
    // the same time fire in the order in which they were started.
    Timer {
        id: clock

        property var then: null

        onTriggered: then()

        function begin(time, what) {
            stop();
            interval = time;
            then = what;
            start();
        }
    }

    PageTest {
        name: "ErrorItem"

        readonly property int patience: 30000

        // Returns a list that records each change of the item's visibility.
        function follow(item) {
            const order = [];
            item.visibleChanged.connect(() => order.push(item.visible ? "shown" : "hidden"));
            return order;
        }

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
            const order = follow(item);
            clock.begin(1000, () => {
                order.push("1 s");
                clock.begin(4000, () => order.push("5 s"));
            });
            item.visible = true;
            tryVerify(() => order.includes("hidden"), patience);
            compare(order.slice(0, 3), ["shown", "1 s", "hidden"]);
        }

        function test_secondTextGoesWithTheTimeOfTheFirst() {
            const item = createTemporaryObject(errorText, stage, { text: "first" });
            const order = follow(item);
            clock.begin(750, () => {
                order.push("second text");
                item.text = "second";
                item.visible = true;
                clock.begin(1200, () => order.push("1.95 s"));
            });
            item.visible = true;
            tryVerify(() => order.includes("hidden"), patience);
            compare(order.slice(0, 3), ["shown", "second text", "hidden"]);
            compare(item.text, "second");
        }

        function test_hasItsFullTimeAgainWhenShownAgain() {
            const item = createTemporaryObject(errorText, stage);
            item.visible = true;
            tryCompare(item, "visible", false, patience);
            const order = follow(item);
            clock.begin(1000, () => order.push("1 s"));
            item.visible = true;
            tryVerify(() => order.includes("hidden"), patience);
            compare(order, ["shown", "1 s", "hidden"]);
        }

        function test_markupIsShownAsItComes() {
            const item = createTemporaryObject(errorText, stage, { text: "<b>text</b>" });
            compare(item.textFormat, Text.PlainText);
        }
    }
}
