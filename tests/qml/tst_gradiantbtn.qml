import QtQuick 2.15
import QtTest 1.15
import "qrc:/NelvoPlugin/qmls/FuncComp"

Item {
    id: stage

    width: 400
    height: 700

    Component {
        id: buttonComponent

        GradiantBtn {
            x: 20
            y: 20
            width: 200
            height: 36
        }
    }

    Component {
        id: plainButton

        GradiantBtn {}
    }

    SignalSpy {
        id: clicks

        signalName: "clicked"
    }

    PageTest {
        id: tests

        property Item button: null

        name: "GradiantBtn"

        function init() {
            warningLog.start();
            mouseMove(stage, 300, 300);
            button = createTemporaryObject(buttonComponent, stage);
            clicks.target = button;
            clicks.clear();
        }

        function hover() {
            mouseMove(button, 100, 18);
            tryCompare(button, "glowVisible", true);
        }

        function comparePixel(image, x, color) {
            const wanted = Qt.lighter(color, 1);
            // Qt's fuzzyCompare accepts any two colours.
            fuzzyCompare(image.red(x, 18), 255 * wanted.r, 4);
            fuzzyCompare(image.green(x, 18), 255 * wanted.g, 4);
            fuzzyCompare(image.blue(x, 18), 255 * wanted.b, 4);
        }

        function test_defaults() {
            compare(button.text, "");
            compare(button.mouseEnabled, true);
            compare(String(button.gradientStartColor), "#2997b4");
            compare(String(button.gradientMidColor), "#277ca3");
            compare(String(button.gradientStopColor), "#255187");
            compare(String(button.glowColor), "#8397ff");
            compare(String(button.textColor), "#ffffff");
            compare(button.glowVisible, false);
            const plain = createTemporaryObject(plainButton, stage);
            compare([plain.width, plain.height], [120, 36]);
        }

        function test_gradientRunsThroughItsThreeColours() {
            const stops = Array.from(button.children[0].gradient.stops);
            compare(stops.map(stop => stop.position), [0, 0.4, 1]);
            const image = grabImage(button);
            comparePixel(image, 0, "#2997b4");
            comparePixel(image, 80, "#277ca3");
            comparePixel(image, 199, "#255187");
        }

        function test_labelShowsTheText() {
            button.text = "登录";
            const label = Array.from(button.children).find(child => child.text !== undefined);
            compare(label.text, "登录");
            compare(label.font.family, "微软雅黑");
            compare(label.font.pixelSize, 14);
            compare(String(label.color), "#ffffff");
            button.textColor = "#123456";
            compare(String(label.color), "#123456");
            fuzzyCompare(label.x + label.width / 2, 100, 1);
            fuzzyCompare(label.y + label.height / 2, 18, 1);
        }

        function test_glowsUnderTheMouse() {
            const glow = findChild(button, "glow");
            compare(glow.visible, false);
            compare(glow.item, null); // created on first use
            hover();
            compare(glow.visible, true);
            compare(glow.item.samples, 7);
            compare(glow.item.source, button.children[0]);
            compare([glow.item.width, glow.item.height], [200, 36]);
            compare(String(glow.item.color), "#8397ff");
            button.glowColor = "#ff0000";
            compare(String(glow.item.color), "#ff0000");
            mouseMove(stage, 300, 300);
            tryCompare(glow, "visible", false);
        }

        function test_mouseBecomesAPointingHand() {
            compare(Array.from(button.children).find(child => child.cursorShape !== undefined).cursorShape,
                    Qt.PointingHandCursor);
        }

        function test_clickIsSignalledOnce() {
            mouseClick(button);
            compare(clicks.count, 1);
        }

        function test_disabledOneOnlyStopsReacting() {
            button.text = "确定";
            const before = grabImage(button);
            button.mouseEnabled = false;
            verify(grabImage(button).equals(before));
            mouseClick(button);
            compare(clicks.count, 0);
            mouseMove(button, 100, 18);
            compare(button.glowVisible, false);
        }

        function test_glowEndsWhenTheMouseIsDisabled() {
            hover();
            button.mouseEnabled = false;
            compare(button.glowVisible, false);
            compare(findChild(button, "glow").visible, false);
        }
    }
}
