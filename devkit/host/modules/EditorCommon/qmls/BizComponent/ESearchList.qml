import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../BasicComponent"

// A list of the elements of `dataModel` whose text holds `searchText`, in any case of its letters.
//
// `listCountFunc()` gives the number of elements and `listDataFunc(index)` the text of one of them. A row
// is a `groupdelegateItem`; it sees its element as `modelData` and its place among the shown rows as
// `index`. The elements are looked through once per change, so long lists stay quick to scroll.
Item {
    id: list

    property string searchText
    property var dataModel: []
    property var listCountFunc: () => dataModel.length
    property var listDataFunc: index => dataModel[index]
    property Component groupdelegateItem

    function search() {
        const wanted = searchText.toLowerCase();
        const count = listCountFunc();
        const found = [];
        for (let i = 0; i < count; ++i) {
            if (wanted === "" || listDataFunc(i).toLowerCase().includes(wanted))
                found.push(i);
        }
        view.matches = found;
        view.positionViewAtBeginning();
    }

    onSearchTextChanged: view.searchAfterCompletion()
    onDataModelChanged: view.searchAfterCompletion()

    ListView {
        id: view
        objectName: "searchView"

        // Where the shown rows stand in dataModel.
        property var matches: []
        property bool complete: false

        function searchAfterCompletion() {
            if (complete)
                list.search();
        }

        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        reuseItems: true
        model: matches.length

        Component.onCompleted: {
            complete = true;
            list.search();
        }

        T.ScrollBar.vertical: EScrollBar {
            parent: list.parent
            x: parent ? parent.width - width : 0
            y: list.y
            height: list.height
        }

        delegate: Loader {
            id: row

            required property int index
            // Set and not bound: a row that a shorter list no longer has keeps its element until it is gone.
            property var modelData: null

            function refresh() {
                if (index >= 0 && index < view.matches.length)
                    modelData = list.dataModel[view.matches[index]];
            }

            width: view.width
            active: modelData !== null
            sourceComponent: list.groupdelegateItem

            onIndexChanged: refresh()
            Component.onCompleted: refresh()

            Connections {
                target: view

                function onMatchesChanged() {
                    row.refresh();
                }
            }
        }
    }
}
