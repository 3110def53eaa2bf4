import QtQuick
import QtQuick.Controls.impl
import Mirel.Screens

// A line icon in the colour of the text it stands by.
IconImage {
    id: icon

    property string symbol: ""
    property int size: Measures.smallIcon

    width: size
    height: size
    source: symbol === "" ? "" : Qt.resolvedUrl("icons/" + symbol + ".svg")
    sourceSize.width: size
    sourceSize.height: size
    color: Theme.secondary
    Accessible.ignored: true
}
