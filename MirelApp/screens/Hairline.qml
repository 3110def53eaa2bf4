import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// Parts two bars of a column.
Rectangle {
    Layout.fillWidth: true
    implicitHeight: Measures.hairline
    color: Theme.border
}
