import QtQuick
import QtQuick.Controls.Basic
import Mirel.Screens

// A menu in the theme's colours.
Menu {
    id: menu

    padding: Measures.tiny
    background: Rectangle {
        implicitWidth: 200
        color: Theme.raised
        radius: Measures.cardRadius
        border.width: Measures.hairline
        border.color: Theme.border
    }
}
