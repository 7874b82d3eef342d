import QtQuick 2.15
import QtTest 1.15
import "qrc:/NelvoPlugin/qmls/BimDialog"

// The check box and its three states.
BimTest {
    name: "EditCheckBox"

    Component {
        id: plainBox

        EditCheckBox {}
    }

    Component {
        id: pictureBox

        EditCheckBox {
            width: 20
            height: 24
            eCheckedUrl: "qrc:/NelvoPlugin/qmls/images/checkYes.png"
            eUnCheckedUrl: "qrc:/NelvoPlugin/qmls/images/checkNo.png"
            partCheckColor: "#ff0000"
        }
    }

    function test_defaults() {
        const box = createTemporaryObject(plainBox, parent);
        compare(String(box.eCheckedUrl), "");
        compare(String(box.eUnCheckedUrl), "");
        compare(box.partCheckColor.valid, false);
        compare(box.partCheck, false);
        compare(box.checked, false);
        const face = findChild(box, "panel");
        compare([face.width, face.height], [16, 16]);
    }

    function test_backgroundIsAGreyFrame() {
        const box = createTemporaryObject(pictureBox, parent);
        const face = findChild(box, "panel");
        compare([face.width, face.height], [20, 24]);
        compare(face.color.a, 0);
        compare(String(face.border.color), "#808080");
        compare(face.border.width, 1);
    }

    function test_clickTurnsThePicture() {
        const box = createTemporaryObject(pictureBox, parent);
        const image = findChild(box, "checkImage");
        compare([image.width, image.height], [20, 24]);
        compare(image.source, picture("checkNo.png"));
        compare(image.visible, true);
        click(box);
        compare(box.checked, true);
        compare(image.source, picture("checkYes.png"));
        compare(image.status, Image.Ready);
        click(box);
        compare(image.source, picture("checkNo.png"));
    }

    function test_partlyCheckedShowsARectangleInstead() {
        const box = createTemporaryObject(pictureBox, parent);
        const image = findChild(box, "checkImage");
        const part = findChild(box, "partRectangle");
        compare(part.visible, false);
        box.partCheck = true;
        compare([image.visible, part.visible], [false, true]);
        compare([part.x, part.y, part.width, part.height], [5, 6, 10, 12]);
        compare(String(part.color), "#ff0000");
        box.checked = true;
        compare([image.visible, part.visible], [false, true]);
        box.partCheck = false;
        compare([image.visible, part.visible], [true, false]);
        compare(image.source, picture("checkYes.png"));
    }
}
