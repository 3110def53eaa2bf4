import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Mirel.Screens

// One sync in the list of the history.
T.ItemDelegate {
    id: row

    required property var modelData
    readonly property var run: modelData
    required property bool isShown
    required property bool showsFocus
    readonly property SyncStatus status: SyncStatus {
        status: row.run.status
    }
    readonly property string statusWord: run.status === "rate_limited" ? "rate limited" : run.status

    signal chosen

    objectName: "runRow"
    implicitHeight: texts.implicitHeight + 2 * Measures.small
    leftPadding: Measures.large
    rightPadding: Measures.large
    topPadding: Measures.small
    bottomPadding: Measures.small
    hoverEnabled: true
    focusPolicy: Qt.NoFocus
    Accessible.role: Accessible.ListItem
    Accessible.name: statusWord + ", " + count.text + ", " + Display.fullDate(run.createdAt)
    Accessible.selected: isShown
    onClicked: chosen()

    // qmllint disable deferred-property-id
    contentItem: ColumnLayout {
        id: texts

        spacing: Measures.tiny / 2

        RowLayout {
            spacing: Measures.small

            Icon {
                symbol: row.run.status === "failed" ? "triangle-alert" : row.run.status === "rate_limited" ? "clock" : row.run.status === "completed" ? "circle-check" : "loader-circle"
                color: row.status.color
            }

            PlainLabel {
                objectName: "runStatus"
                Layout.fillWidth: true
                text: row.statusWord
                font.weight: Measures.emphasis
            }

            PlainLabel {
                objectName: "runDate"
                text: Display.clockTime(row.run.createdAt, Display.now)
                color: Theme.secondary
                font.pixelSize: Measures.metaText
            }
        }

        PlainLabel {
            id: count

            objectName: "runFetched"
            Layout.fillWidth: true
            Layout.leftMargin: Measures.smallIcon + Measures.small
            text: Display.number(row.run.fetched) + " fetched"
            color: Theme.secondary
            font.pixelSize: Measures.metaText
        }
    }
    background: Rectangle {
        color: row.isShown ? Theme.current : row.hovered ? Theme.hovered : "transparent"

        FocusRing {
            radius: 0
            visible: row.showsFocus
        }
    }
}
