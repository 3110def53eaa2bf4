import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// Over the post in the reader: the way back, and the post on X.
RowLayout {
    id: header

    required property MirelAppModel appModel
    // The name of the place that the post was opened from.
    required property string origin

    signal openedOnX

    spacing: Measures.small

    PushButton {
        objectName: "leaveReader"
        isQuiet: true
        symbol: "arrow-left"
        text: header.origin === "" ? "Back" : "Back to " + header.origin
        tip: "Esc or Alt+Left"
        onClicked: header.appModel.requestBack()
    }

    Item {
        Layout.fillWidth: true
    }

    PushButton {
        objectName: "readerOpenOnX"
        isQuiet: true
        symbol: "external-link"
        text: "Open on X"
        tip: "Ctrl+Return"
        onClicked: header.openedOnX()
    }
}
