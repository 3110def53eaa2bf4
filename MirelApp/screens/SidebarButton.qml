import QtQuick
import QtQuick.Templates as T
import Mirel.Screens

// One place of the sidebar; only its icon when `isFolded`.
T.Button {
    id: control

    required property string symbol
    required property bool isFolded
    required property bool isShown
    // What is shown is listed below this place.
    property bool holdsShown: isShown
    // The place tells how many bookmarks it holds.
    property bool isCounted: false
    property double count: 0

    implicitHeight: Measures.controlHeight
    leftPadding: isFolded ? 0 : Measures.small
    rightPadding: isFolded ? 0 : Measures.small
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    checked: isShown
    opacity: enabled ? 1 : 0.5
    font.pixelSize: Measures.controlText
    font.weight: holdsShown ? Measures.strong : Font.Normal
    Accessible.role: Accessible.PageTab
    Accessible.name: isCounted ? text + ", " + Display.number(count) : text
    Accessible.selected: isShown

    // qmllint disable deferred-property-id
    contentItem: Item {
        Icon {
            id: icon

            anchors.verticalCenter: parent.verticalCenter
            x: control.isFolded ? (parent.width - width) / 2 : 0
            symbol: control.symbol
            color: control.holdsShown ? Theme.tint : Theme.secondary
        }

        PlainLabel {
            anchors.left: icon.right
            anchors.leftMargin: Measures.small
            anchors.right: number.left
            anchors.verticalCenter: parent.verticalCenter
            visible: !control.isFolded
            text: control.text
            font: control.font
        }

        PlainLabel {
            id: number

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: !control.isFolded && control.count > 0
            text: Display.number(control.count)
            color: Theme.secondary
            font.pixelSize: Measures.metaText
        }
    }
    background: Rectangle {
        radius: Measures.controlRadius
        color: control.isShown ? Theme.current : control.hovered ? Theme.hovered : "transparent"

        FocusRing {
            visible: control.visualFocus
        }
    }

    HoverTip {
        visible: control.isFolded && (control.hovered || control.visualFocus)
        text: control.isCounted ? control.text + " (" + Display.number(control.count) + ")" : control.text
    }
}
