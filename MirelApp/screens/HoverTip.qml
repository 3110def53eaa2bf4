import QtQuick.Controls.Basic
import QtQuick
import Mirel.Screens

// A tooltip in the theme's colours.
ToolTip {
    id: tip

    delay: 600
    padding: Measures.small
    font.pixelSize: Measures.controlText
    contentItem: PlainLabel {
        text: tip.text
        font: tip.font
        elide: Text.ElideNone
        wrapMode: Text.Wrap
    }
    background: Rectangle {
        color: Theme.raised
        radius: Measures.controlRadius
        border.width: Measures.hairline
        border.color: Theme.border
    }
}
