import QtQuick
import Mirel.Screens

// One public counter of a post, unless nobody counted.
Row {
    id: counter

    required property string symbol
    required property double count
    required property string noun
    required property color color

    visible: count > 0
    height: Math.max(implicitHeight, Math.round(18 * Measures.scale))
    spacing: Measures.tiny
    Accessible.role: Accessible.StaticText
    Accessible.name: Display.number(count) + " " + noun

    Icon {
        anchors.verticalCenter: parent.verticalCenter
        symbol: counter.symbol
        size: Math.round(14 * Measures.scale)
        color: counter.color
    }

    PlainLabel {
        anchors.verticalCenter: parent.verticalCenter
        text: Display.compactNumber(counter.count)
        color: counter.color
        font.pixelSize: Measures.metaText
    }
}
