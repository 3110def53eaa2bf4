import QtQuick
import QtQuick.Controls.Basic
import Mirel.Screens

// Shows where in a page or a list one is, when it does not fit.
ScrollBar {
    id: bar

    required property string name

    policy: size < 1 ? ScrollBar.AsNeeded : ScrollBar.AlwaysOff
    Accessible.name: name
    contentItem: Rectangle {
        implicitWidth: Measures.small
        radius: width / 2
        color: Theme.tertiary
        opacity: bar.pressed ? 0.9 : bar.hovered ? 0.7 : 0.35
    }
}
