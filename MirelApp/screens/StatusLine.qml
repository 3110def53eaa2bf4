import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// One message, with the sign of its kind and the ways to answer it.
RowLayout {
    id: line

    required property string symbol
    required property color symbolColor
    required property string kind
    required property string message
    property string action: ""

    signal actionRequested
    signal dismissed

    visible: message !== ""
    spacing: Measures.small
    Accessible.role: Accessible.AlertMessage
    Accessible.name: kind + ": " + message

    Icon {
        symbol: line.symbol
        color: line.symbolColor
    }

    PlainLabel {
        objectName: "message"
        Layout.fillWidth: true
        Layout.topMargin: Measures.tiny
        Layout.bottomMargin: Measures.tiny
        text: line.message
        // What others say may be long; the window stays usable.
        elide: Text.ElideRight
        maximumLineCount: 5
        wrapMode: Text.Wrap
    }

    PushButton {
        objectName: "answer"
        visible: line.action !== ""
        isQuiet: true
        text: line.action
        onClicked: line.actionRequested()
    }

    IconButton {
        objectName: "dismiss"
        symbol: "x"
        text: "Dismiss"
        onClicked: line.dismissed()
    }
}
