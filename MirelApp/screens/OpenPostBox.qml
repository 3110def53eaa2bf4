import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// Opens the post that an address or an id names.
Sheet {
    id: box

    required property MirelAppModel appModel
    // Until the post is opened or the box closed: a failed look-up leaves it so.
    property bool isAsking: false

    function ask() {
        if (address.text.trim() === "")
            return;
        appModel.dismissError();
        isAsking = true;
        appModel.requestTweet(address.text);
    }

    objectName: "openPostBox"
    title: "Open X bookmark"
    preferredWidth: Measures.questionWidth
    messages: isAsking ? appModel : null
    onOpened: address.take()
    onClosed: isAsking = false

    Connections {
        target: box.appModel
        enabled: box.isAsking

        function onBookmarkOpened() {
            box.close();
            address.text = "";
        }
    }

    FormField {
        id: address

        objectName: "postReference"
        Layout.fillWidth: true
        Layout.leftMargin: Measures.huge
        Layout.rightMargin: Measures.huge
        Layout.topMargin: Measures.large
        name: ""
        prompt: "X URL or tweet ID"
        onAccepted: box.ask()
    }

    PlainLabel {
        objectName: "openPostHint"
        Layout.fillWidth: true
        Layout.leftMargin: Measures.huge
        Layout.rightMargin: Measures.huge
        Layout.topMargin: Measures.small
        text: "Mirel will look up the post in the local library."
        color: Theme.secondary
        elide: Text.ElideNone
        wrapMode: Text.Wrap
    }

    RowLayout {
        Layout.alignment: Qt.AlignRight
        Layout.margins: Measures.huge
        spacing: Measures.small

        PushButton {
            objectName: "cancelOpenPost"
            text: "Cancel"
            onClicked: box.close()
        }

        PushButton {
            objectName: "confirmOpenPost"
            isPrimary: true
            enabled: address.text.trim() !== ""
            text: "Open X bookmark"
            onClicked: box.ask()
        }
    }
}
