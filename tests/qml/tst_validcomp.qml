import QtQuick 2.15
import QtTest 1.15

Item {
    width: 400
    height: 700

    // Timers fire in order: after three rounds, the page's own timer would have fired too if it still ran.
    Timer {
        id: clock

        property int rounds: 0

        repeat: true

        onTriggered: ++rounds

        function begin(time) {
            rounds = 0;
            interval = time;
            start();
        }
    }

    SignalSpy {
        id: values

        signalName: "valueChanged"
    }

    PageTest {
        name: "ValidComp"

        readonly property int patience: 30000

        function timer() {
            return Array.from(item("validComp").resources).find(object => object.interval !== undefined);
        }

        function letTimersRun() {
            clock.begin(timer().interval);
            tryVerify(() => clock.rounds >= 3, patience);
            clock.stop();
        }

        function test_places() {
            openPage("ValidComp");
            const bar = item("progress");
            compare([bar.x, bar.y, bar.width, bar.height], [26, 0, 288, 14]);
            compare(bar.value, 0);
            compare([timer().interval, timer().repeat, timer().running], [80, true, true]);
            bar.value = 0.5;
            timer().triggeredOnStart = true;
            compare(bar.value, 0);
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
            tryVerify(() => loginCtrl.calls.length > 0, patience);
            compare(running, false);
            verify(ticks === 9 || ticks === 10); // the spy may count the last tick after onShowHome
            compare(values.count, 10);
            fuzzyCompare(item("progress").value, 1, 0.001);
            compare(loginCtrl.calls, [["onShowHome"]]);
        }

        function test_eventsDuringAndAfterShowHomeBringNoSecondOne() {
            openPage("ValidComp");
            let returned = false;
            during.onShowHome = () => {
                letTimersRun();
                returned = true;
            };
            tryVerify(() => returned, patience);
            letTimersRun();
            compare(loginCtrl.calls, [["onShowHome"]]);
        }

        // The host loads its data during the call. Meanwhile a check finds a new release.
        function test_offerDuringShowHomeWaitsForItsEnd() {
            openPage("ValidComp");
            let shown = "";
            during.onShowHome = () => {
                updater.needUpdate(true);
                shown = item("contentLoader").item.objectName;
            };
            tryVerify(() => item("updateComp"), patience);
            compare(shown, "validComp");
            compare(loginCtrl.calls, [["onShowHome"]]);
        }
    }
}
