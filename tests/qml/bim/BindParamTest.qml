import QtQuick 2.15
import QtQuick.Window 2.15
import QtTest 1.15
import "qrc:/NelvoPlugin/qmls/Extern"

// The equipment binding in the host's component panel.
BimTest {
    name: "SDKBindParam"

    Component {
        id: bindParam

        SDKBindParam {
            width: 300
        }
    }

    Component {
        id: plainParent

        Item {
            width: 260

            SDKBindParam {}
        }
    }

    Component {
        id: loader

        Loader {
            width: 280
            source: "qrc:/NelvoPlugin/qmls/Extern/SDKBindParam.qml"
        }
    }

    function createPage() {
        compCardData.deviceID = "SN-0017";
        componentObject.currentComp = "comp-9";
        return createTemporaryObject(bindParam, parent);
    }

    function place(page, objectName) {
        const part = findChild(page, objectName);
        const corner = part.mapToItem(page, 0, 0);
        return [corner.x, corner.y, part.width, part.height];
    }

    function test_layoutFromTopToBottom() {
        const page = createPage();
        compare(page.spacing, 5);
        compare(place(page, "titleBar"), [0, 0, 300, 35]);
        compare(place(page, "deviceLabel"), [16, 40, 268, 20]);
        compare(place(page, "deviceButton"), [16, 65, 268, 32]);
        compare(place(page, "clearButton"), [16 + 268 - 8 - 14, 65 + 9, 14, 14]);
        const title = place(page, "titleText");
        compare(title[0], 16);
        fuzzyCompare(title[1] + title[3] / 2, 17.5, 0.5);
    }

    function test_textsAndColours() {
        const page = createPage();
        const bar = findChild(page, "titleBar");
        compare(String(bar.color), "#2d2f41");
        compare(String(bar.border.color), "#3d4054");
        compare(bar.border.width, 1);
        const title = findChild(page, "titleText");
        compare(title.text, "物联绑定");
        compare(String(title.color), "#f0f0f0");
        compare(title.font.pixelSize, 14);
        const label = findChild(page, "deviceLabel");
        compare(label.text, "设备ID");
        compare(String(label.color), "#dddddd");
        compare(label.verticalAlignment, Text.AlignVCenter);
        const button = findChild(page, "deviceButton");
        compare(button.btnText, "SN-0017");
        compare([button.eBtnBorderColor, button.eBtnTextColor, button.eBtnBackGround].map(String),
                ["#636363", "#535353", "#dddddd"]);
        compCardData.deviceID = "SN-0018";
        compare(button.btnText, "SN-0018");
    }

    function test_clickOnTheDeviceOpensTheDevicePage() {
        const page = createPage();
        mouseClick(findChild(page, "deviceButton"), 40, 16);
        compare(callLog.calls, [["openWeb", "file:///opt/editor/EditorWebExtern/page/device.html",
                                 Qt.rect(0, 0, 368, 440)]]);
    }

    function test_clearButtonClearsTheCurrentComponentAlone() {
        const page = createPage();
        const clear = findChild(page, "clearButton");
        compare(clear.tipText, "清除");
        compare(clear.bHideBorder, true);
        const image = "qrc:/EditorPlug/qmls/images1/box_ic_txt_clear";
        compare([clear.eNormalSource, clear.eDisableSource].map(String), [image + ".png", image + ".png"]);
        compare([clear.eHoverSource, clear.ePressedSource].map(String), [image + "_hover.png", image + "_hover.png"]);
        compare(findChild(clear, "picture").status, Image.Ready);
        click(clear);
        compare(callLog.calls, [["clearDeviceData", "comp-9"]]);
    }

    function test_isUsedByKeyboard_data() {
        return [{ tag: "device", stop: "设备ID", description: "SN-0017", call: "openWeb", outline: "#ffffff" },
                { tag: "clear", stop: "清除", description: "", call: "clearDeviceData", outline: "#535353" }];
    }

    function test_isUsedByKeyboard(data) {
        const page = createPage();
        const window = page.Window.window;
        for (let i = 0; i < 3 && window.activeFocusItem.Accessible.name !== data.stop; ++i)
            keyClick(Qt.Key_Tab);
        const stop = window.activeFocusItem;
        compare([stop.Accessible.name, stop.Accessible.description], [data.stop, data.description]);
        const outline = findChild(stop, "focusFrame");
        compare([outline.visible, outline.x, outline.y], [true, -3, -3]);
        compare(String(outline.border.color), data.outline);
        keyClick(Qt.Key_Space);
        compare(names(callLog.calls), [data.call]);
    }

    function test_controlsHaveRolesAndNames() {
        const page = createPage();
        const window = page.Window.window;
        compare(setup.controls(window), ["Button 设备ID", "Button 清除"]);
        verify(setup.press(window, "Button 清除"));
        compare(names(callLog.calls), ["clearDeviceData"]);
    }

    function test_takesTheWidthOfWhatHoldsIt() {
        const holder = createTemporaryObject(loader, parent);
        compare(holder.item.width, 280);
        compare(findChild(holder.item, "titleBar").width, 280);
        compare(createTemporaryObject(plainParent, parent).children[0].width, 260);
    }
}
