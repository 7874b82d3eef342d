import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../BasicComponent"

// A list of the entries of `dataModel` whose text contains `searchText`, ignoring case.
//
// `listCountFunc()` returns the number of entries and `listDataFunc(index)` the text of an entry.
// `groupdelegateItem` is the delegate of a row: `modelData` is its entry, and `index` its position among the
// shown rows. The entries are searched once for each change, so long lists scroll fast. A long list is searched
// in portions, so that the window still processes events; the rows change when the search has ended.
Item {
    id: list

    property string searchText
    property var dataModel: []
    property var listCountFunc: () => 0
    property var listDataFunc: index => ""
    property Component groupdelegateItem

    function search() {
        view.next = 0;
        view.found = [];
        view.searchPortion();
    }

    onSearchTextChanged: view.searchAfterCompletion()
    onDataModelChanged: view.searchAfterCompletion()

    ListView {
        id: view
        objectName: "searchView"

        readonly property int portion: 5000
        // The positions of the shown rows in `entries`, which is the dataModel that was searched.
        property var matches: []
        property var entries: []
        // The running search: the next entry, and the positions so far.
        property int next: 0
        property var found: []
        property bool complete: false

        function searchAfterCompletion() {
            if (complete)
                list.search();
        }

        function searchPortion() {
            const wanted = list.searchText.toLowerCase();
            const count = list.listCountFunc();
            const end = wanted === "" ? count : Math.min(next + portion, count);
            let i = next;
            for (; i < end; ++i) {
                if (wanted === "" || list.listDataFunc(i).toLowerCase().includes(wanted))
                    found.push(i);
            }
            next = i;
            if (next < count) {
                nextPortion.start();
                return;
            }
            nextPortion.stop();
            entries = list.dataModel;
            matches = found;
            positionViewAtBeginning();
        }

        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        reuseItems: true
        model: matches.length

        Component.onCompleted: {
            complete = true;
            list.search();
        }

        Timer {
            id: nextPortion

            interval: 0

            onTriggered: view.searchPortion()
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
                    modelData = view.entries[view.matches[index]];
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
