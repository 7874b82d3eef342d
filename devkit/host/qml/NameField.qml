import QtQuick 2.15
import "."

// The name of the project in hand, if it is one of `projects`, for the user to change.
Field {
    id: field

    property QtObject desk
    property QtObject projects

    property string knownId
    property string knownName
    readonly property bool hasProject: knownName !== ""
    readonly property bool isNewName: hasProject && text.trim() !== "" && text.trim() !== knownName

    // What the user has typed stays until the project or its name has changed.
    function follow() {
        const name = projects.nameOf(desk.selectedId);
        if (desk.selectedId === knownId && name === knownName)
            return;
        knownId = desk.selectedId;
        knownName = name;
        text = name;
    }

    enabled: hasProject

    Connections {
        target: field.desk

        function onDetailsChanged() {
            field.follow();
        }
    }
}
