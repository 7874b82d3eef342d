import QtQuick 2.15
import "."

// The name of the selected project, if it is in `projects`. The user can change it.
Field {
    id: field

    property QtObject desk
    property QtObject projects

    property string knownId
    property string knownName
    readonly property bool hasProject: knownName !== ""
    readonly property bool isNewName: hasProject && text.trim() !== "" && text.trim() !== knownName

    // Keeps the user's text until the project or its name changes.
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
