import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Mirel.Screens

// One sync: its numbers, what went wrong, and its log.
ColumnLayout {
    id: detail

    // Null: none.
    required property var run
    // Oldest first.
    required property var entries
    readonly property string numbers: run === null ? "" : [Display.number(run.fetched) + " fetched", Display.number(run.created) + " new",
        Display.number(run.updated) + " updated", Display.number(run.pages) + " page(s)"].join(" · ")

    objectName: "runDetail"
    spacing: 0

    ColumnLayout {
        Layout.fillWidth: true
        Layout.margins: Measures.large
        spacing: Measures.tiny

        FormHeading {
            objectName: "runTitle"
            text: detail.run === null ? "" : "Run #" + detail.run.id
        }

        PlainLabel {
            objectName: "runNumbers"
            Layout.fillWidth: true
            text: detail.numbers
            elide: Text.ElideNone
            wrapMode: Text.Wrap
        }

        PlainLabel {
            objectName: "runBegan"
            Layout.fillWidth: true
            text: detail.run === null ? "" : detail.run.kind + ", " + Display.fullDate(detail.run.createdAt)
            color: Theme.secondary
            elide: Text.ElideNone
            wrapMode: Text.Wrap
        }

        PlainLabel {
            objectName: "runError"
            Layout.fillWidth: true
            // The log tells it too, as far as it is kept.
            visible: text !== "" && !detail.entries.some(entry => entry.event === "failed")
            text: detail.run?.errorMessage ?? ""
            color: Theme.failure
            elide: Text.ElideRight
            wrapMode: Text.Wrap
            maximumLineCount: 8
        }

        RowLayout {
            Layout.topMargin: Measures.tiny
            visible: reset.text !== ""
            spacing: Measures.small

            Icon {
                symbol: "clock"
                color: Theme.warning
            }

            PlainLabel {
                id: reset

                objectName: "runReset"
                Layout.fillWidth: true
                text: detail.run?.rateLimitResetAt === undefined ? "" : "X rate limit resets " + Display.clockTime(detail.run.rateLimitResetAt,
                                                                                                            Display.now)
            }
        }
    }

    Hairline {}

    StatePanel {
        objectName: "noEntries"
        Layout.fillWidth: true
        Layout.fillHeight: true
        visible: detail.entries.length === 0
        symbol: "history"
        title: "No detailed diagnostics"
        explanation: "Detailed page logs are available for syncs made with this version of Mirel."
    }

    ListView {
        id: log

        objectName: "runLog"
        Layout.fillWidth: true
        Layout.fillHeight: true
        visible: detail.entries.length > 0
        clip: true
        activeFocusOnTab: true
        boundsBehavior: Flickable.StopAtBounds
        topMargin: Measures.small
        bottomMargin: Measures.small
        model: detail.entries
        Accessible.role: Accessible.List
        Accessible.name: "Log of the sync"

        delegate: SyncLogRow {
            width: ListView.view.width
        }

        ScrollBar.vertical: PageScrollBar {
            name: "Position in the log"
        }

        FocusRing {
            anchors.margins: Measures.tiny / 2
            visible: log.activeFocus
        }
    }
}
