import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../BasicComponent"

// A list of the entries of `dataModel` whose text contains `searchText`, ignoring case.
//
// `listCountFunc()` returns the number of entries and `listDataFunc(index)` the text of an entry.
// `groupdelegateItem` is the delegate of a row: `modelData` is its entry, and `index` its position among the
// shown rows. The entries are searched once for each change, so long lists scroll fast.
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

        // The positions of the shown rows in dataModel.
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
            // Set instead of bound: if the list gets shorter, a dropped row keeps its entry until it is deleted.
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
