import QtQuick 2.15
import "qrc:/NelvoPlugin/qmls/FuncComp"

Item {
    id: stage

    width: 400
    height: 700

    Component {
        id: bar

        ProgressItem {
            width: 200
            height: 14
        }
    }

    PageTest {
        name: "ProgressItem"

        function compareGradient(gradient) {
            compare(gradient.orientation, Gradient.Horizontal);
            compare(gradient.stops.length, 2);
            compare(String(gradient.stops[0].color), "#2997b4");
            compare(gradient.stops[0].position, 0);
            compare(String(gradient.stops[1].color), "#255187");
            compare(gradient.stops[1].position, 1);
        }

        function test_defaults() {
            const item = createTemporaryObject(bar, stage);
            compare(String(item.gradientStartColor), "#2997b4");
            compare(String(item.gradientStopColor), "#255187");
            compare([item.from, item.to, item.value], [0, 1, 0]);
            compare([item.implicitWidth, item.implicitHeight], [200, 14]);
        }

        function test_backgroundIsARoundedFaintBar() {
            const item = createTemporaryObject(bar, stage);
            compare([item.background.width, item.background.height], [200, 14]);
            compare(item.background.radius, 7);
            compare(item.background.opacity, 0.3);
            compareGradient(item.background.gradient);
        }

        function test_filledPartFollowsTheValue() {
            const item = createTemporaryObject(bar, stage);
            const filled = findChild(item, "filled");
            compare(filled.width, 0);
            item.value = 0.4;
            compare(filled.width, 80);
            item.value = 1;
            compare(filled.width, 200);
            compare(filled.height, 14);
            compare(filled.radius, 7);
            compare(filled.opacity, 1);
            compareGradient(filled.gradient);
        }
    }
}
