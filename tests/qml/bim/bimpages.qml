import QtQuick 2.15

// The host's scene, and the test cases that open the pages in it.
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
