import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// One line in the log of a sync.
RowLayout {
    id: row

    required property var modelData
    readonly property var entry: modelData
    readonly property string numbers: entry.page === undefined ? "" : [Display.number(entry.requested) + " requested",
        Display.number(entry.received) + " received", Display.number(entry.reported) + " reported",
        Display.number(entry.cumulative) + " in all"].join(" · ") + (entry.hasNextPage ? " · More pages available" : "")

    objectName: "logRow"
    spacing: Measures.small
    Accessible.role: Accessible.ListItem
    Accessible.name: time.text + ", " + entry.message + (numbers === "" ? "" : ", " + numbers)

    PlainLabel {
        id: time

        Layout.alignment: Qt.AlignTop
        Layout.leftMargin: Measures.large
        Layout.topMargin: Measures.tiny
        text: Display.secondOfDay(row.entry.createdAt)
        color: Theme.secondary
        font.pixelSize: Measures.metaText
    }

    ColumnLayout {
        Layout.fillWidth: true
        Layout.rightMargin: Measures.large
        Layout.topMargin: Measures.tiny
        Layout.bottomMargin: Measures.tiny
        spacing: Measures.tiny / 2

        PlainLabel {
            objectName: "logMessage"
            Layout.fillWidth: true
            text: row.entry.message
            color: row.entry.event === "failed" ? Theme.failure : Theme.text
            elide: Text.ElideNone
            wrapMode: Text.Wrap
        }

        PlainLabel {
            objectName: "logNumbers"
            Layout.fillWidth: true
            visible: text !== ""
            text: row.numbers
            color: Theme.secondary
            font.pixelSize: Measures.metaText
            elide: Text.ElideNone
            wrapMode: Text.Wrap
        }
    }
}
