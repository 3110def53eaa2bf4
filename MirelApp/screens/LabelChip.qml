import QtQuick
import Mirel.Screens

// A label as a small chip: its name beside a dot of its colour.
Rectangle {
    id: chip

    required property string name
    required property string colorHex

    implicitWidth: Math.min(content.implicitWidth + Measures.medium, Measures.sidebarWidth)
    implicitHeight: content.implicitHeight + Measures.tiny
    radius: height / 2
    color: "transparent"
    border.width: Measures.hairline
    border.color: Theme.border

    Row {
        id: content

        anchors.centerIn: parent
        spacing: Measures.tiny

        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            width: Measures.small
            height: Measures.small
            radius: Measures.tiny
            color: Theme.labelColor(chip.colorHex)
        }

        PlainLabel {
            text: chip.name
            width: Math.min(implicitWidth, Measures.sidebarWidth - Measures.huge)
            color: Theme.secondary
            font.pixelSize: Measures.metaText
        }
    }
}
