import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// What to do where the browser does not open, or cannot return to Mirel.
ColumnLayout {
    id: help

    required property MirelAppModel appModel

    function handOver() {
        if (callback.text.trim() !== "")
            appModel.requestXCallback(callback.text);
    }

    // An address that is handed over is of no more use, and the next sign-in begins without it.
    onVisibleChanged: callback.text = ""

    spacing: Measures.small

    PlainLabel {
        Layout.fillWidth: true
        text: "Mirel waits for X in your browser. If no page opened, copy its address into one."
        color: Theme.secondary
        elide: Text.ElideNone
        wrapMode: Text.Wrap
    }

    PushButton {
        objectName: "copySignInPage"
        symbol: "copy"
        text: "Copy Page Address"
        onClicked: {
            page.selectAll();
            page.copy();
            page.deselect();
        }

        TextEdit {
            id: page

            visible: false
            text: help.appModel.xAuthorizationURL
            textFormat: TextEdit.PlainText
        }
    }

    FormField {
        id: callback

        objectName: "callback"
        Layout.fillWidth: true
        Layout.topMargin: Measures.small
        name: "If the browser cannot return to Mirel, paste the address it was sent to"
        prompt: "mirel://oauth/x?…"
        onAccepted: help.handOver()
    }

    PushButton {
        objectName: "takeCallback"
        enabled: callback.text.trim() !== ""
        text: "Finish Connecting"
        onClicked: help.handOver()
    }
}
