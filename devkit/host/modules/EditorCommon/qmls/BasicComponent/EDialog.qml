import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import QtGraphicalEffects 1.0
import "../Config"

// A panel over the scene. Visible independently of its parent; x and y are relative to the parent.
T.Popup {
    padding: 0
    focus: true
    // The user can use the scene behind the panel.
    modal: false
    closePolicy: T.Popup.CloseOnEscape

    background: Item {
        RectangularGlow {
            anchors.fill: parent
            anchors.topMargin: 4
            glowRadius: 14
            spread: 0.05
            cornerRadius: EConfig.eRadius + glowRadius
            color: "#80000000"
        }

        Rectangle {
            anchors.fill: parent
            anchors.margins: -1
            color: EConfig.eDialogBackground
            border.color: EConfig.eDialogBorder
            radius: EConfig.eRadius
        }
    }
}
