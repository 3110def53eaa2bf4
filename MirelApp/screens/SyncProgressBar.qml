import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// Where a running sync is, and the way to end it.
Rectangle {
    id: bar

    required property MirelAppModel appModel
    readonly property var progress: appModel.syncProgress

    objectName: "syncProgressBar"
    visible: progress !== null
    implicitHeight: Measures.controlHeight + Measures.small
    color: Theme.background
    Accessible.role: Accessible.StatusBar
    Accessible.name: phase.text

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Measures.large
        anchors.rightMargin: Measures.small
        spacing: Measures.small

        Icon {
            symbol: "loader-circle"
            color: Theme.tint

            RotationAnimation on rotation {
                running: bar.visible && Theme.motion > 0
                loops: Animation.Infinite
                from: 0
                to: 360
                duration: 1000
            }
        }

        PlainLabel {
            id: phase

            objectName: "syncPhase"
            text: bar.progress === null || bar.progress.pages === 0 ? "Connecting to X…" : "Fetching X bookmarks · page "
                                                                      + bar.progress.pages
            font.weight: Measures.emphasis
        }

        PlainLabel {
            objectName: "syncReceived"
            Layout.fillWidth: true
            visible: bar.progress !== null && bar.progress.pages > 0
            text: bar.progress === null ? "" : Display.number(bar.progress.fetched) + " received"
                                          + (bar.progress.hasNextPage ? " · More pages available" : "")
            color: Theme.secondary
        }

        Item {
            Layout.fillWidth: true
        }

        PushButton {
            objectName: "cancelSync"
            isQuiet: true
            text: "Cancel"
            tip: "Ends the sync. What has arrived stays."
            Accessible.name: "Cancel the sync"
            onClicked: bar.appModel.cancelSync()
        }
    }
}
