import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// Asks once before something that cannot be undone, in words that say what will happen.
Sheet {
    id: sheet

    required property string explanation
    required property string action

    signal confirmed

    objectName: "confirmation"
    preferredWidth: Measures.questionWidth
    onOpened: refusal.forceActiveFocus(Qt.OtherFocusReason)

    PlainLabel {
        objectName: "confirmationText"
        Layout.fillWidth: true
        Layout.margins: Measures.huge
        text: sheet.explanation
        elide: Text.ElideNone
        wrapMode: Text.Wrap
        lineHeightMode: Text.FixedHeight
        lineHeight: Measures.controlLine
    }

    RowLayout {
        Layout.alignment: Qt.AlignRight
        Layout.rightMargin: Measures.huge
        Layout.bottomMargin: Measures.huge
        spacing: Measures.small

        PushButton {
            id: refusal

            objectName: "refuse"
            text: "Cancel"
            Keys.onReturnPressed: clicked()
            Keys.onEnterPressed: clicked()
            onClicked: sheet.close()
        }

        PushButton {
            objectName: "confirm"
            isPrimary: true
            isDestructive: true
            text: sheet.action
            Keys.onReturnPressed: clicked()
            Keys.onEnterPressed: clicked()
            onClicked: {
                sheet.close();
                sheet.confirmed();
            }
        }
    }
}
