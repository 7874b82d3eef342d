import QtQuick 2.15

// A test double of the host's scene, in which the test cases open the pages.
Item {
    id: scene

    width: 800
    height: 700

    DialogTest {}
    PanelTest {}
    RowTest {}
    OrgCheckTest {}
    LongListTest {}
    EditCheckBoxTest {}
    BindParamTest {}
    AccessTest {}
}
