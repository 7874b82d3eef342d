import QtQuick 2.15
import QtTest 1.15

Item {
    width: 400
    height: 700

    SignalSpy {
        id: values

        signalName: "valueChanged"
    }

    PageTest {
        name: "ValidComp"

        function timer() {
            return Array.from(item("validComp").resources).find(object => object.interval !== undefined);
        }

        function test_places() {
            openPage("ValidComp");
            const bar = item("progress");
            compare([bar.x, bar.y, bar.width, bar.height], [26, 0, 288, 14]);
            compare(bar.value, 0);
            compare([timer().interval, timer().repeat, timer().running], [80, true, true]);
        }

        function test_tenTicksThenOneShowHome() {
            openPage("ValidComp");
            values.target = item("progress");
            values.clear();
            let ticks = -1;
            let running = true;
            during.onShowHome = () => {
                running = timer().running;
                ticks = values.count;
            };
            tryVerify(() => loginCtrl.calls.length > 0);
            compare(running, false);
            verify(ticks === 9 || ticks === 10); // the spy may hear of the last one only afterwards
            compare(values.count, 10);
            fuzzyCompare(item("progress").value, 1, 0.001);
            compare(loginCtrl.calls, [["onShowHome"]]);
        }

        function test_eventsDuringShowHomeBringNoSecondOne() {
            openPage("ValidComp");
            let returned = false;
            during.onShowHome = () => {
                wait(200);
                returned = true;
            };
            tryVerify(() => returned);
            compare(loginCtrl.calls, [["onShowHome"]]);
        }
    }
}
