import QtQuick 2.15
import QtTest 1.15
import "qrc:/NelvoPlugin/qmls/FuncComp"

Item {
    id: stage

    width: 400
    height: 700

    Component {
        id: plainBox

        BComboBox {
            width: 200
            height: 36
        }
    }

    Component {
        id: fruitBox

        BComboBox {
            width: 200
            height: 36
            dropList: ["apple", "pear", "pineapple"]
        }
    }

    Component {
        id: listeningPage

        Item {
            property int presses: 0

            Keys.onReturnPressed: ++presses
            Keys.onEnterPressed: ++presses

            BComboBox {
                width: 200
                height: 36
            }
        }
    }

    SignalSpy {
        id: activations

        signalName: "activated"
    }

    PageTest {
        name: "BComboBox"

        function field(box) {
            return findChild(box, "field");
        }

        function hint(box) {
            return field(box).children[0];
        }

        function openPopup(box) {
            mouseClick(box, box.width - 12, 18);
            tryCompare(box.popup, "opened", true);
        }

        function entry(box, index) {
            tryVerify(() => box.popup.contentItem.itemAtIndex(index));
            return box.popup.contentItem.itemAtIndex(index);
        }

        function test_defaults() {
            const box = createTemporaryObject(plainBox, stage);
            compare(box.dropList, []);
            compare(box.outText, "");
            compare(String(box.textColor), "#ffffff");
            compare(String(box.normalColor), "#414458");
            compare(String(box.highlightColor), "#313343");
            compare(String(box.selectColor), "#313343");
            compare(String(box.disableColor), "#808080");
            compare(box.headImage, "");
            compare(box.arrowImage, "images/arrowDown.png");
            compare(box.placeholderText, "");
            compare(box.readonly, false);
        }

        function test_coloursReachTheParts() {
            const box = createTemporaryObject(plainBox, stage, {
                placeholderText: "hint", textColor: "#111111", normalColor: "#222222", highlightColor: "#333333",
                selectColor: "#444444", disableColor: "#555555"
            });
            compare([field(box).color, field(box).selectionColor, field(box).selectedTextColor].map(String),
                    ["#111111", "#444444", "#111111"]);
            compare(field(box).placeholderText, "hint");
            compare(String(box.background.color), "#222222");
            compare([box.popup.background.color, box.popup.background.border.color].map(String),
                    ["#222222", "#333333"]);
            box.enabled = false;
            compare(String(box.background.color), "#555555");
        }

        function test_indicatorStandsAtTheRight() {
            const box = createTemporaryObject(plainBox, stage);
            compare(box.indicator.width, 12);
            compare(box.indicator.height, 8);
            compare(box.indicator.x, 200 - 10 - 12);
            compare(box.indicator.y, 14);
            compare(box.indicator.source, picture("arrowDown.png"));
            compare(box.indicator.status, Image.Ready);
        }

        function test_indicatorTakesAFullAddressToo() {
            const box = createTemporaryObject(plainBox, stage, { arrowImage: picture("checkYes.png") });
            compare(box.indicator.source, picture("checkYes.png"));
            compare([box.indicator.status, box.indicator.width, box.indicator.height], [Image.Ready, 12, 8]);
        }

        function test_headerIsASquareWithThePicture() {
            const box = createTemporaryObject(plainBox, stage, { headImage: picture("checkYes.png"), height: 50 });
            const header = findChild(box, "header");
            compare([header.width, header.height], [50, 50]);
            const image = header.children[0];
            compare([image.x, image.y, image.width, image.height], [9, 9, 32, 32]);
            compare(image.status, Image.Ready);
            compare([field(box).x, field(box).height, field(box).leftPadding], [50, 50, 4]);
            compare(field(box).x + field(box).width, 200 - 10 - 15);
        }

        function test_fontReachesTheParts() {
            const box = createTemporaryObject(fruitBox, stage, { placeholderText: "hint" });
            box.font.pixelSize = 17;
            openPopup(box);
            compare([field(box), hint(box), entry(box, 0).contentItem].map(part => part.font.pixelSize), [17, 17, 17]);
        }

        function test_withoutAHeadImageTheFieldStartsAtTheLeftEdge() {
            const box = createTemporaryObject(plainBox, stage);
            compare(findChild(box, "header").width, 0);
            compare(field(box).mapToItem(box, 0, 0).x, 0);
            compare([field(box).leftPadding, field(box).verticalAlignment], [10, TextInput.AlignVCenter]);
            compare(field(box).width, 200 - 10 - 15);
        }

        function test_headerSwallowsClicks() {
            const box = createTemporaryObject(fruitBox, stage, { headImage: picture("C.png") });
            mouseClick(box, 18, 18);
            compare(box.popup.visible, false);
            compare(box.pressed, false);
        }

        function test_fieldSelectsItsTextOnGettingTheFocus_data() {
            return [{ tag: "by mouse" }, { tag: "by key" }];
        }

        function test_fieldSelectsItsTextOnGettingTheFocus(data) {
            const box = createTemporaryObject(plainBox, stage, { outText: "some text" });
            if (data.tag === "by mouse")
                mouseClick(field(box), 20, 18);
            else
                box.forceActiveFocus(Qt.TabFocusReason);
            tryCompare(field(box), "selectedText", "some text");
            type("x");
            compare(box.outText, "x");
        }

        function test_fieldSelectsByMouse() {
            const box = createTemporaryObject(plainBox, stage, { outText: "some text" });
            mouseClick(field(box), 150, 18);
            tryCompare(field(box), "activeFocus", true);
            mousePress(field(box), 2, 18);
            mouseMove(field(box), 80, 18);
            mouseMove(field(box), 150, 18);
            mouseRelease(field(box), 150, 18);
            compare(field(box).selectedText, "some text");
        }

        function test_hintShowsWhileThereIsNoText() {
            const box = createTemporaryObject(plainBox, stage, { placeholderText: "hint" });
            compare([hint(box).text, hint(box).visible], ["hint", true]);
            compare(String(hint(box).color), "#8b8fa6");
            compare([hint(box).font.family, hint(box).font.pixelSize], ["微软雅黑", 12]);
            compare([hint(box).x, hint(box).width], [10, field(box).width - 10 - 6]);
            compare([hint(box).height, hint(box).verticalAlignment, hint(box).elide],
                    [36, Text.AlignVCenter, Text.ElideRight]);
            box.outText = "x";
            compare(hint(box).visible, false);
        }

        function test_popupOpensJustUnderTheBox() {
            const box = createTemporaryObject(fruitBox, stage);
            const list = box.popup.contentItem;
            compare(list.count, 0);
            openPopup(box);
            compare(box.popup.y, 35);
            compare(box.popup.width, 200);
            compare(box.popup.padding, 2);
            compare(list.count, 3);
            compare(list.height, list.contentHeight);
            compare(box.popup.height, list.contentHeight + 4);
            box.popup.close();
            tryCompare(box.popup, "visible", false);
            compare(list.count, 0);
        }

        function test_popupOfALongListStaysInTheWindow() {
            const many = [];
            for (let i = 0; i < 50; ++i)
                many.push("entry " + i);
            const box = createTemporaryObject(plainBox, stage, { dropList: many });
            openPopup(box);
            compare(box.popup.height, 700 - 2 * 2);
            const list = box.popup.contentItem;
            verify(list.contentHeight > box.popup.height);
            for (let i = 0; i < 40; ++i)
                keyClick(Qt.Key_Down);
            compare([list.highlightMoveDuration, list.clip], [0, true]);
            tryVerify(() => {
                const shown = list.itemAtIndex(box.highlightedIndex);
                return shown && shown.highlighted && shown.y + shown.height <= list.contentY + list.height;
            });
        }

        function test_entriesShowTheList() {
            const box = createTemporaryObject(fruitBox, stage);
            openPopup(box);
            compare(entry(box, 1).text, "pear");
            compare(entry(box, 1).width, 200);
            const label = entry(box, 1).contentItem;
            compare([label.text, label.elide], ["pear", Text.ElideRight]);
            compare([label.x, label.width], [10, 180]);
            compare([label.verticalAlignment, label.Accessible.ignored], [Text.AlignVCenter, true]);
            compare([label.font.family, label.font.pixelSize], ["微软雅黑", 12]);
            compare(String(label.color), "#ffffff");
            box.textColor = "#123456";
            compare(String(label.color), "#123456");
            compare(String(entry(box, 1).background.color), "#414458");
            mouseMove(entry(box, 1), 50, 10);
            tryVerify(() => String(entry(box, 1).background.color) === "#313343");
        }

        function test_clickOnAnEntryChoosesIt() {
            const box = createTemporaryObject(fruitBox, stage);
            openPopup(box);
            activations.target = box;
            activations.clear();
            mouseClick(entry(box, 1), 50, 10);
            compare(activations.count, 1);
            compare(activations.signalArguments[0][0], 1);
            compare(box.currentIndex, 1);
            compare(box.currentText, "pear");
            compare(box.outText, "pear");
            tryCompare(box.popup, "visible", false);
        }

        function test_clickOnAReadonlyBoxChoosesToo() {
            const box = createTemporaryObject(fruitBox, stage, { readonly: true });
            openPopup(box);
            mouseClick(entry(box, 2), 50, 10);
            compare(box.outText, "pineapple");
            compare(box.currentIndex, 2);
        }

        function test_textMatchesTheFirstEntryThatContainsIt_data() {
            return [
                { tag: "whole entry", text: "pear", index: 1 },
                { tag: "middle", text: "ppl", index: 0 },
                { tag: "only in a later one", text: "ine", index: 2 },
                { tag: "substring wins over equality", text: "apple", index: 0 },
                { tag: "other case", text: "Pear", index: -1 },
                { tag: "in none", text: "plum", index: -1 }
            ];
        }

        function test_textMatchesTheFirstEntryThatContainsIt(data) {
            const box = createTemporaryObject(fruitBox, stage);
            box.forceActiveFocus(Qt.TabFocusReason);
            tryCompare(field(box), "activeFocus", true);
            type(data.text);
            compare(box.outText, data.text);
            compare(box.currentIndex, data.index);
        }

        function test_everyTextIsMatchedAnew() {
            const box = createTemporaryObject(fruitBox, stage);
            const indices = [];
            box.currentIndexChanged.connect(() => indices.push(box.currentIndex));
            box.outText = "app";
            compare(indices, [-1, 0]);
        }

        function test_substringIsEnoughEvenBeforeAnEqualEntry() {
            const box = createTemporaryObject(plainBox, stage, { dropList: ["pineapple", "apple"] });
            box.outText = "apple";
            compare(box.currentIndex, 0);
        }

        function test_emptyTextMatchesTheFirstEntry() {
            const box = createTemporaryObject(fruitBox, stage);
            box.outText = "plum";
            compare(box.currentIndex, -1);
            box.outText = "";
            compare(box.currentIndex, 0);
        }

        function test_readonlyTextMatchesNothing() {
            const box = createTemporaryObject(fruitBox, stage, { readonly: true });
            compare(field(box).readOnly, true);
            compare(box.currentIndex, 0);
            box.outText = "pear";
            compare(box.currentIndex, 0);
            box.forceActiveFocus(Qt.TabFocusReason);
            tryCompare(field(box), "activeFocus", true);
            type("a"); // "apple" starts with this letter
            keyClick(Qt.Key_Space);
            compare(box.popup.visible, false);
            compare(box.outText, "pear");
        }

        function test_typingMovesTheHighlightAndNeverFilters() {
            const box = createTemporaryObject(fruitBox, stage);
            openPopup(box);
            type("pe");
            compare(box.popup.visible, true);
            compare(box.popup.contentItem.count, 3);
            tryCompare(box, "highlightedIndex", 1);
            compare(String(entry(box, 1).background.color), "#313343");
            type("x");
            tryCompare(box, "highlightedIndex", -1);
            compare(box.popup.contentItem.count, 3);
        }

        function test_fieldHasTheFocusOnceTheListIsClosed() {
            const box = createTemporaryObject(fruitBox, stage);
            openPopup(box);
            mouseClick(entry(box, 1), 50, 10);
            tryCompare(field(box), "activeFocus", true);
            type("s");
            compare(box.outText, "pears");
        }

        function test_escapeClosesTheListAndChangesNothing() {
            const box = createTemporaryObject(fruitBox, stage, { outText: "pear" });
            openPopup(box);
            keyClick(Qt.Key_Up);
            keyClick(Qt.Key_Escape);
            tryCompare(box.popup, "visible", false);
            compare(box.outText, "pear");
        }

        function test_returnOfAClosedBoxGoesToThePage_data() {
            return [{ tag: "Return", key: Qt.Key_Return }, { tag: "Enter", key: Qt.Key_Enter }];
        }

        function test_returnOfAClosedBoxGoesToThePage(data) {
            const page = createTemporaryObject(listeningPage, stage);
            const box = page.children[0];
            box.forceActiveFocus(Qt.TabFocusReason);
            tryCompare(field(box), "activeFocus", true);
            keyClick(data.key);
            compare(page.presses, 1);
            keyClick(data.key);
            compare(page.presses, 2);
        }

        function test_arrowKeysChoose() {
            const box = createTemporaryObject(fruitBox, stage);
            box.forceActiveFocus(Qt.TabFocusReason);
            tryCompare(field(box), "activeFocus", true);
            keyClick(Qt.Key_Down);
            compare(box.outText, "pear");
            compare(box.currentIndex, 1);
        }

        function test_returnInAnOpenListChoosesTheHighlightedEntry() {
            const box = createTemporaryObject(fruitBox, stage);
            openPopup(box);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Return);
            compare(box.outText, "pineapple");
            tryCompare(box.popup, "visible", false);
        }

        function test_returnInAnOpenListKeepsATextThatMatchesNothing() {
            const box = createTemporaryObject(fruitBox, stage);
            openPopup(box);
            type("plum");
            keyClick(Qt.Key_Return);
            compare(box.outText, "plum");
            tryCompare(box.popup, "visible", false);
        }
    }
}
