import QtQuick
import QtQuick.Controls.Basic as Basic
import Mirel.Screens

// A tooltip in the theme's colours for what it stands in. It is made only when it is to be seen: a list has many,
// and most are never needed.
Loader {
    id: tip

    property string text: ""

    anchors.fill: parent
    active: visible
    Accessible.ignored: true

    sourceComponent: Basic.ToolTip {
        id: bubble

        visible: true
        text: tip.text // qmllint disable unqualified
        delay: 600
        padding: Measures.small
        font.pixelSize: Measures.controlText
        contentItem: PlainLabel {
            text: bubble.text
            font: bubble.font
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
}
