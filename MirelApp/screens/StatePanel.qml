import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// Stands in place of the rows: what is so, why, and what to do about it.
Item {
    id: panel

    required property string symbol
    required property string title
    required property string explanation
    property color symbolColor: Theme.tertiary
    // What the user can type in a terminal; can be selected and copied.
    property string command: ""
    property string commandHint: ""
    default property alias actions: actionRow.data

    Accessible.role: Accessible.Grouping
    Accessible.name: title + ". " + explanation

    ColumnLayout {
        anchors.centerIn: parent
        width: Math.min(parent.width - 2 * Measures.huge, 460 * Measures.scale)
        spacing: Measures.medium

        Icon {
            Layout.alignment: Qt.AlignHCenter
            Layout.preferredWidth: Measures.largeIcon
            Layout.preferredHeight: Measures.largeIcon
            symbol: panel.symbol
            size: Measures.largeIcon
            color: panel.symbolColor
        }

        PlainLabel {
            objectName: "stateTitle"
            Layout.fillWidth: true
            text: panel.title
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            font.pixelSize: Measures.titleText
            font.weight: Measures.strong
        }

        PlainLabel {
            objectName: "stateExplanation"
            Layout.fillWidth: true
            text: panel.explanation
            color: Theme.secondary
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            lineHeightMode: Text.FixedHeight
            lineHeight: Measures.controlLine
        }

        PlainLabel {
            Layout.fillWidth: true
            visible: text !== ""
            text: panel.commandHint
            color: Theme.secondary
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            lineHeightMode: Text.FixedHeight
            lineHeight: Measures.controlLine
        }

        Rectangle {
            Layout.alignment: Qt.AlignHCenter
            Layout.preferredWidth: Math.min(commandText.implicitWidth + 2 * Measures.medium, parent.width)
            Layout.preferredHeight: commandText.implicitHeight + 2 * Measures.small
            visible: panel.command !== ""
            radius: Measures.controlRadius
            color: Theme.background
            border.width: commandText.activeFocus ? Measures.focusRing : Measures.hairline
            border.color: commandText.activeFocus ? Theme.tint : Theme.border

            TextEdit {
                id: commandText

                objectName: "stateCommand"
                anchors.fill: parent
                anchors.leftMargin: Measures.medium
                anchors.rightMargin: Measures.medium
                anchors.topMargin: Measures.small
                text: panel.command
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
                Accessible.name: "Command to connect X"
                onActiveFocusChanged: activeFocus ? selectAll() : deselect()
            }
        }

        Row {
            id: actionRow

            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: Measures.small
            spacing: Measures.small
        }
    }
}
