import QtQuick
import Mirel.Screens

// A text of one line, drawn as it is.
Text {
    textFormat: Text.PlainText
    color: Theme.text
    font.pixelSize: Measures.controlText
    elide: Text.ElideRight
    verticalAlignment: Text.AlignVCenter
}
