import QtQuick 2.15

// Stands in for the host's scene. The test cases open the pages in it.
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
