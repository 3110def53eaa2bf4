import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// The services that Mirel talks to, and what is done with all their credentials at once.
ColumnLayout {
    id: settings

    required property MirelAppModel appModel

    function take() {
        form.take();
    }

    function forgetSecrets() {
        form.forgetSecrets();
    }

    spacing: Measures.large

    RowLayout {
        Layout.fillWidth: true
        spacing: Measures.medium

        FormHeading {
            text: "Connections"
        }

        ProviderStatus {
            Layout.fillWidth: false
            name: "X"
            isConfigured: settings.appModel.xConfigured
        }
    }

    XConnectionForm {
        id: form

        Layout.fillWidth: true
        appModel: settings.appModel
    }

    Flow {
        Layout.fillWidth: true
        spacing: Measures.small

        PushButton {
            objectName: "validateConnections"
            enabled: settings.appModel.xConfigured && !settings.appModel.isWorking
            text: "Validate Configured Connections"
            tip: "Asks each connected service whether it still accepts Mirel"
            onClicked: settings.appModel.requestConnectionValidation()
        }

        PushButton {
            objectName: "clearCredentials"
            isDestructive: true
            text: "Clear Credentials"
            onClicked: question.open()
        }
    }

    SheetLoader {
        id: question

        appModel: settings.appModel
        sourceComponent: ConfirmationSheet {
            title: "Clear the credentials?"
            explanation: "Mirel removes its tokens and keys from the keyring and can no longer sync. Your library stays as it is."
            action: "Clear Credentials"
            onConfirmed: settings.appModel.requestCredentialRemoval() // qmllint disable unqualified
        }
    }
}
