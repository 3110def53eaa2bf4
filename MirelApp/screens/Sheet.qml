import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import QtQuick.Templates as T
import Mirel.Screens

// Stands over the window until it is closed. What was typed into it stays for the next time.
Popup {
    id: sheet

    required property string title
    property string subtitle: ""
    property int preferredWidth: Measures.formWidth
    // What the last command said, below the content; null when that is told elsewhere.
    property MirelAppModel messages: null
    default property alias content: body.data
    readonly property bool hasMessage: messages !== null && (messages.lastError !== "" || messages.statusMessage !== "")
    readonly property real roomiestHeight: parent === null ? 0 : parent.height - 2 * Measures.huge

    parent: T.Overlay.overlay
    x: parent === null ? 0 : Math.round((parent.width - width) / 2)
    y: parent === null ? 0 : Math.round((parent.height - height) / 2)
    width: Math.min(preferredWidth, parent === null ? preferredWidth : parent.width - 2 * Measures.huge)
    modal: true
    focus: true
    closePolicy: Popup.CloseOnEscape
    padding: 0

    T.Overlay.modal: Rectangle {
        color: Theme.veil
    }
    background: Rectangle {
        color: Theme.surface
        radius: Measures.cardRadius
        border.width: Measures.hairline
        border.color: Theme.border
    }
    // qmllint disable deferred-property-id
    contentItem: ColumnLayout {
        spacing: 0
        Accessible.role: Accessible.Dialog
        Accessible.name: sheet.title

        RowLayout {
            Layout.fillWidth: true
            Layout.leftMargin: Measures.huge
            Layout.rightMargin: Measures.medium
            Layout.topMargin: Measures.medium
            Layout.bottomMargin: Measures.medium
            spacing: Measures.small

            ColumnLayout {
                Layout.fillWidth: true
                spacing: Measures.tiny / 2

                PlainLabel {
                    objectName: "sheetTitle"
                    Layout.fillWidth: true
                    text: sheet.title
                    font.pixelSize: Measures.titleText
                    font.weight: Measures.strong
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }

                PlainLabel {
                    objectName: "sheetSubtitle"
                    Layout.fillWidth: true
                    visible: text !== ""
                    text: sheet.subtitle
                    color: Theme.secondary
                    elide: Text.ElideNone
                    wrapMode: Text.Wrap
                }
            }

            IconButton {
                objectName: "closeSheet"
                Layout.alignment: Qt.AlignTop
                symbol: "x"
                text: "Close (Esc)"
                Accessible.name: "Close"
                onClicked: sheet.close()
            }
        }

        Hairline {}

        ColumnLayout {
            id: body

            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: 0
        }

        Hairline {
            visible: sheet.hasMessage
        }

        Loader {
            Layout.fillWidth: true
            Layout.leftMargin: Measures.small
            Layout.rightMargin: Measures.small
            Layout.bottomMargin: visible ? Measures.tiny : 0
            active: sheet.hasMessage
            visible: active
            sourceComponent: StatusBar {
                appModel: sheet.messages // qmllint disable unqualified
                errorShownElsewhere: ""
                color: Theme.surface
            }
        }
    }
}
