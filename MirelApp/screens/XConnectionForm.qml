import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// Connects an X account, in the browser or by tokens.
ColumnLayout {
    id: form

    required property MirelAppModel appModel
    property int address: 0
    property bool takesTokens: false
    readonly property string redirectURI: appModel.xRedirectURIs[address]

    function take() {
        clientID.take();
    }

    function forgetSecrets() {
        for (const field of [clientSecret, accessToken, refreshToken])
            field.text = "";
    }

    function connectAccount() {
        appModel.dismissError();
        appModel.requestXOAuth(clientID.text, clientSecret.text, redirectURI);
    }

    function saveTokens() {
        appModel.dismissError();
        appModel.requestXCredentials(clientID.text, clientSecret.text, accessToken.text, refreshToken.text, userID.text,
                                     username.text);
    }

    spacing: Measures.medium

    PlainLabel {
        Layout.fillWidth: true
        text: "X direct connection"
        font.weight: Measures.strong
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    FormField {
        id: clientID

        objectName: "clientID"
        Layout.fillWidth: true
        name: "OAuth client ID / X API key"
        onAccepted: form.connectAccount()
    }

    FormField {
        id: clientSecret

        objectName: "clientSecret"
        Layout.fillWidth: true
        name: "Client secret (optional for public clients)"
        isSecret: true
        onAccepted: form.connectAccount()
    }

    Rectangle {
        Layout.fillWidth: true
        implicitHeight: registration.implicitHeight + 2 * Measures.medium
        radius: Measures.controlRadius
        color: Theme.background

        ColumnLayout {
            id: registration

            anchors.left: parent.left
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            anchors.leftMargin: Measures.medium
            anchors.rightMargin: Measures.medium
            spacing: Measures.tiny

            PlainLabel {
                objectName: "redirectHint"
                Layout.fillWidth: true
                text: "Register this exact URL in X"
                color: Theme.secondary
            }

            TextEdit {
                id: shownAddress

                objectName: "redirectURI"
                Layout.fillWidth: true
                text: form.redirectURI
                textFormat: TextEdit.PlainText
                readOnly: true
                selectByMouse: true
                activeFocusOnTab: true
                wrapMode: TextEdit.WrapAnywhere
                color: Theme.text
                selectionColor: Theme.tint
                selectedTextColor: Theme.onTint
                font.family: "monospace"
                font.pixelSize: Measures.controlText
                Accessible.role: Accessible.EditableText
                Accessible.readOnly: true
                Accessible.name: "Redirect URL: " + text
                onActiveFocusChanged: activeFocus ? selectAll() : deselect()

                FocusRing {
                    anchors.margins: -Measures.tiny
                    visible: shownAddress.activeFocus
                }
            }

            Flow {
                Layout.fillWidth: true
                Layout.topMargin: Measures.tiny
                spacing: Measures.small

                PushButton {
                    objectName: "copyRedirectURI"
                    symbol: "copy"
                    text: "Copy"
                    Accessible.name: "Copy the redirect URL"
                    onClicked: {
                        shownAddress.selectAll();
                        shownAddress.copy();
                        shownAddress.deselect();
                    }
                }

                PushButton {
                    objectName: "otherRedirectURI"
                    isQuiet: true
                    text: form.address === 0 ? "Use a web address instead" : "Use Mirel’s own address instead"
                    tip: "Some X apps accept web addresses only"
                    onClicked: form.address = 1 - form.address
                }
            }
        }
    }

    Flow {
        Layout.fillWidth: true
        spacing: Measures.small

        PushButton {
            objectName: "connectX"
            isPrimary: true
            symbol: "external-link"
            text: "Connect with X OAuth"
            tip: "Opens X in your browser"
            onClicked: form.connectAccount()
        }

        PushButton {
            objectName: "cancelConnectX"
            visible: form.appModel.isAuthorizingX
            text: "Cancel"
            Accessible.name: "Cancel the sign-in"
            onClicked: form.appModel.cancelXAuthorization()
        }
    }

    XSignInHelp {
        objectName: "signInHelp"
        Layout.fillWidth: true
        visible: form.appModel.isAuthorizingX
        appModel: form.appModel
    }

    PushButton {
        objectName: "showTokens"
        Layout.leftMargin: -Measures.medium
        isQuiet: true
        symbol: form.takesTokens ? "chevron-down" : "chevron-right"
        text: "Use an existing Mirel user token bundle"
        checkable: true
        checked: form.takesTokens
        onToggled: form.takesTokens = checked
    }

    ColumnLayout {
        Layout.fillWidth: true
        visible: form.takesTokens
        spacing: Measures.medium

        FormField {
            id: accessToken

            objectName: "accessToken"
            Layout.fillWidth: true
            name: "User access token"
            isSecret: true
            onAccepted: form.saveTokens()
        }

        FormField {
            id: refreshToken

            objectName: "refreshToken"
            Layout.fillWidth: true
            name: "Refresh token"
            isSecret: true
            onAccepted: form.saveTokens()
        }

        FormField {
            id: userID

            objectName: "userID"
            Layout.fillWidth: true
            name: "X user ID"
            onAccepted: form.saveTokens()
        }

        FormField {
            id: username

            objectName: "username"
            Layout.fillWidth: true
            name: "X username"
            onAccepted: form.saveTokens()
        }

        PlainLabel {
            Layout.fillWidth: true
            text: "A field that is left blank keeps what is saved."
            color: Theme.secondary
            elide: Text.ElideNone
            wrapMode: Text.Wrap
        }

        PushButton {
            objectName: "saveTokens"
            isPrimary: true
            text: "Save X Credentials"
            onClicked: form.saveTokens()
        }
    }
}
