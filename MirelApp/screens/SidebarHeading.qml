import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// The name of a section of the sidebar.
PlainLabel {
    Layout.leftMargin: Measures.small
    Layout.topMargin: Measures.small
    Layout.bottomMargin: Measures.tiny
    color: Theme.tertiary
    font.pixelSize: Measures.metaText
    font.weight: Measures.strong
    font.capitalization: Font.AllUppercase
    font.letterSpacing: 0.5
}
