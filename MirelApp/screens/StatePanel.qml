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

        Row {
            id: actionRow

            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: Measures.small
            spacing: Measures.small
        }
    }
}
