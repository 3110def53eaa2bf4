import QtQuick
import QtQuick.Templates as T
import Mirel.Screens

// A button that is only an icon. Its text is its accessible name and its tooltip.
T.Button {
    id: control

    property string symbol: ""
    property color symbolColor: Theme.secondary

    implicitWidth: Measures.controlHeight
    implicitHeight: Measures.controlHeight
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    opacity: enabled ? 1 : 0.5
    Accessible.name: text

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            symbol: control.symbol
            color: control.symbolColor
        }
    }
    background: Rectangle {
        radius: Measures.controlRadius
        color: control.down ? Theme.current : control.hovered && control.enabled ? Theme.hovered : "transparent"

        FocusRing {
            visible: control.visualFocus
        }
    }

    HoverTip {
        visible: control.hovered || control.visualFocus
        text: control.text
    }
}
