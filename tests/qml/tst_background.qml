import QtQuick 2.15
import "qrc:/NelvoPlugin/qmls/FuncComp"

Item {
    width: 400
    height: 700

    Background {
        id: background
    }

    PageTest {
        name: "Background"

        function test_defaults() {
            compare(background.width, 340);
            compare(background.height, 642);
            compare(String(background.color), "#272937");
            compare(String(background.border.color), "#7f7e8c");
            compare(background.border.width, 2);
            compare(background.titleBarHeight, 32);
        }

        function test_titleBarSpansTheWidth() {
            const titleBar = findChild(background, "titleBar");
            compare(titleBar.width, 340);
            compare(titleBar.height, 32);
            compare(titleBar.x, 0);
            compare(titleBar.y, 0);
        }

        function test_titleBarShowsThePointingHand() {
            compare(findChild(background, "titleBar").children[0].cursorShape, Qt.PointingHandCursor);
        }

        function test_closeButtonStandsAtTheTopRight() {
            const button = findChild(background, "closeButton");
            compare(button.width, 16);
            compare(button.height, 16);
            compare(button.mapToItem(background, 0, 0), Qt.point(340 - 10 - 16, 10));
        }

        function test_closeButtonShowsTheMouse() {
            const button = findChild(background, "closeButton");
            mouseMove(background, 100, 300);
            compare(button.source, picture("close.png"));
            compare(button.status, Image.Ready);
            mouseMove(button, 8, 8);
            tryCompare(button, "source", picture("close_hover.png"));
            compare(button.status, Image.Ready);
            mouseMove(background, 100, 300);
            tryCompare(button, "source", picture("close.png"));
        }

        // The pages do not move with the stand-in window, so each move adds the distance from the press.
        function test_dragMeasuresFromThePress() {
            view.x = 100;
            view.y = 200;
            const titleBar = findChild(background, "titleBar");
            mousePress(titleBar, 50, 16);
            compare([view.x, view.y], [100, 200]);
            mouseMove(titleBar, 60, 12);
            compare([view.x, view.y], [110, 196]);
            mouseMove(titleBar, 65, 12);
            compare([view.x, view.y], [125, 192]);
            mouseRelease(titleBar, 65, 12);
            mouseMove(titleBar, 90, 20);
            compare([view.x, view.y], [125, 192]);
        }

        function test_dragStartsAnywhereUpToTheCloseButton() {
            view.x = 0;
            const titleBar = findChild(background, "titleBar");
            mousePress(titleBar, 313, 31);
            mouseMove(titleBar, 303, 31);
            compare(view.x, -10);
            mouseRelease(titleBar, 303, 31);
        }

        function test_nothingMovesWithoutAPress() {
            view.x = 0;
            const titleBar = findChild(background, "titleBar");
            mouseMove(titleBar, 20, 16);
            mouseMove(titleBar, 80, 16);
            compare(view.x, 0);
        }
    }
}
