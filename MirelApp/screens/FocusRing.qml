import QtQuick
import Mirel.Screens

// Shows where the keyboard is.
Rectangle {
    anchors.fill: parent
    color: "transparent"
    radius: Measures.controlRadius
    border.width: Measures.focusRing
    border.color: Theme.tint
}
