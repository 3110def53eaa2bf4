import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// The deletion of everything.
ColumnLayout {
    id: zone

    required property MirelAppModel appModel

    spacing: Measures.medium

    FormHeading {
        text: "Danger zone"
    }

    PlainLabel {
        Layout.fillWidth: true
        text: "Removes the whole library and all credentials from this computer. Your bookmarks on X stay."
        color: Theme.secondary
        elide: Text.ElideNone
        wrapMode: Text.Wrap
    }

    PushButton {
        objectName: "deleteAllData"
        enabled: zone.appModel.hasLibrary
        isDestructive: true
        symbol: "trash-2"
        text: "Delete All Data…"
        onClicked: question.open()
    }

    SheetLoader {
        id: question

        appModel: zone.appModel
        sourceComponent: ConfirmationSheet {
            title: "Delete all data?"
            explanation: "Mirel removes every bookmark, label, folder, rule, note and highlight, the sync history, the settings, and all tokens and keys from this computer. Your bookmarks on X stay. This cannot be undone."
            action: "Delete All Data"
            onConfirmed: zone.appModel.requestDataDeletion() // qmllint disable unqualified
        }
    }
}
