import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Mirel.Screens

// The one main window.
ApplicationWindow {
    id: main

    required property MirelAppModel appModel

    objectName: "main"
    title: "Mirel"
    width: 1240
    height: 780
    minimumWidth: 560
    minimumHeight: 400
    color: Theme.surface
    palette.window: Theme.surface
    palette.windowText: Theme.text
    palette.base: Theme.surface
    palette.text: Theme.text
    palette.highlight: Theme.tint
    palette.highlightedText: Theme.onTint

    Shortcut {
        sequences: ["Ctrl+R"]
        enabled: main.appModel.hasLibrary && !main.appModel.isSyncing
        onActivated: main.appModel.requestSync(false)
    }

    Shortcut {
        sequences: ["F5"]
        enabled: main.appModel.hasLibrary
        onActivated: main.appModel.requestRefresh()
    }

    Shortcut {
        sequences: ["Alt+Left"]
        enabled: main.appModel.page > 0 // qmllint disable
        onActivated: main.appModel.requestPreviousPage()
    }

    Shortcut {
        sequences: ["Alt+Right"]
        enabled: main.appModel.page + 1 < main.appModel.pageCount // qmllint disable
        onActivated: main.appModel.requestNextPage()
    }

    Shortcut {
        sequences: ["Ctrl+Q"]
        onActivated: main.close()
    }

    RowLayout {
        anchors.fill: parent
        spacing: 0

        MailboxSidebar {
            id: sidebar

            Layout.fillHeight: true
            appModel: main.appModel
            isFolded: main.width < Measures.foldingWidth
        }

        Rectangle {
            Layout.fillHeight: true
            implicitWidth: Measures.hairline
            color: Theme.border
        }

        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: 0

            LibraryHeader {
                Layout.fillWidth: true
                Layout.preferredHeight: Measures.barHeight
                Layout.leftMargin: Measures.huge
                Layout.rightMargin: Measures.large
                appModel: main.appModel
                title: sidebar.currentTitle
            }

            Hairline {}

            LibraryContent {
                id: content

                Layout.fillWidth: true
                Layout.fillHeight: true
                appModel: main.appModel
                onOpened: address => Qt.openUrlExternally(address)
            }

            Hairline {
                visible: sync.visible || status.visible || paging.visible
            }

            SyncProgressBar {
                id: sync

                Layout.fillWidth: true
                appModel: main.appModel
            }

            StatusBar {
                id: status

                Layout.fillWidth: true
                appModel: main.appModel
                errorIsShownElsewhere: content.shown === "unavailable" || content.shown === "failed"
            }

            Hairline {
                visible: paging.visible && (sync.visible || status.visible)
            }

            PagingBar {
                id: paging

                Layout.fillWidth: true
                appModel: main.appModel
            }
        }
    }
}
