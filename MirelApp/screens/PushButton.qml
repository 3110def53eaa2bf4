import QtQuick
import QtQuick.Templates as T
import Mirel.Screens

// A button with words, and an icon before them when `symbol` names one.
T.Button {
    id: control

    property string symbol: ""
    property bool isPrimary: false
    // Without a frame until the pointer is on it.
    property bool isQuiet: false
    // What it does cannot be undone.
    property bool isDestructive: false
    property bool symbolFollowsText: false
    property string tip: ""
    // The side on which another button adjoins.
    property bool joinsLeft: false
    property bool joinsRight: false
    readonly property color fill: isDestructive ? Theme.failure : Theme.tint
    readonly property color foreground: isPrimary ? Theme.readableOn(fill) : isDestructive ? Theme.failure : Theme.text

    implicitWidth: Math.max(implicitHeight, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Measures.controlHeight
    leftPadding: Measures.medium
    rightPadding: Measures.medium
    spacing: Measures.small
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    opacity: enabled ? 1 : 0.5
    font.pixelSize: Measures.controlText
    font.weight: Measures.emphasis
    Accessible.name: text
    Accessible.description: tip

    contentItem: Row {
        spacing: control.spacing
        layoutDirection: control.symbolFollowsText ? Qt.RightToLeft : Qt.LeftToRight

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            visible: control.symbol !== ""
            symbol: control.symbol
            color: control.foreground
        }

        PlainLabel {
            anchors.verticalCenter: parent.verticalCenter
            visible: text !== ""
            text: control.text
            font: control.font
            color: control.foreground
        }
    }
    background: Rectangle {
        radius: Measures.controlRadius
        color: control.isPrimary ? control.fill : control.down ? Theme.current : control.hovered
                                                             && control.enabled ? Theme.hovered : control.isQuiet ? "transparent" :
                                                                                                                    Theme.surface
        border.width: control.isPrimary || control.isQuiet ? 0 : Measures.hairline
        border.color: Theme.border

        Rectangle {
            x: control.joinsLeft ? 0 : parent.width - width
            width: parent.radius
            height: parent.height
            // Half-transparent shapes that overlap would show.
            visible: control.enabled && (control.joinsLeft || control.joinsRight)
            color: parent.color
        }

        Rectangle {
            anchors.fill: parent
            visible: control.isPrimary && control.enabled && (control.hovered || control.down)
            radius: parent.radius
            color: control.foreground
            opacity: control.down ? 0.16 : 0.08
        }

        FocusRing {
            anchors.margins: -Measures.tiny
            radius: Measures.controlRadius + Measures.tiny
            visible: control.visualFocus
        }
    }

    HoverTip {
        visible: control.tip !== "" && (control.hovered || control.visualFocus)
        text: control.tip
    }
}
