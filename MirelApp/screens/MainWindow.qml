import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Mirel.Screens

// The one main window.
ApplicationWindow {
    id: main

    required property MirelAppModel appModel
    // Kept between two runs.
    property alias listWidth: content.listWidth

    readonly property bool isReaderOpen: appModel.isReaderOpen
    // Nothing stands over the window.
    readonly property bool isFree: !history.isOpen && !settings.isOpen && !openPost.isOpen

    onIsReaderOpenChanged: {
        if (!isReaderOpen)
            content.focusRows(false);
    }

    function search() {
        if (appModel.isReaderOpen)
            appModel.requestDestination("search");
        header.focusSearch();
    }

    function openOnX() {
        Qt.openUrlExternally(appModel.shownPost.sourceURL);
    }

    objectName: "main"
    title: "Mirel"
    width: 1240
    height: 780
    minimumWidth: 560
    minimumHeight: 480
    color: Theme.surface
    palette.window: Theme.surface
    palette.windowText: Theme.text
    palette.base: Theme.surface
    palette.text: Theme.text
    palette.highlight: Theme.tint
    palette.highlightedText: Theme.onTint

    Shortcut {
        sequences: ["Ctrl+R"]
        enabled: main.isFree && main.appModel.hasLibrary && !main.appModel.isSyncing
        onActivated: main.appModel.requestSync(false)
    }

    Shortcut {
        sequences: ["F5"]
        enabled: main.isFree && main.appModel.hasLibrary
        onActivated: main.appModel.requestRefresh()
    }

    Shortcut {
        sequences: ["Ctrl+1"]
        enabled: main.isFree && main.appModel.hasLibrary
        onActivated: main.appModel.requestDestination("today")
    }

    Shortcut {
        sequences: ["Ctrl+2"]
        enabled: main.isFree && main.appModel.hasLibrary
        onActivated: main.appModel.requestDestination("library")
    }

    Shortcut {
        sequences: ["Ctrl+F"]
        enabled: main.isFree && main.appModel.hasLibrary
        onActivated: main.search()
    }

    Shortcut {
        sequences: ["Alt+Left", "Back"]
        enabled: main.isFree && (main.appModel.canGoBack || main.isReaderOpen)
        onActivated: main.appModel.requestBack()
    }

    Shortcut {
        sequences: ["Esc"]
        enabled: main.isFree && main.isReaderOpen
        onActivated: main.appModel.requestBack()
    }

    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        enabled: main.isFree && main.appModel.shownPost !== null
        onActivated: main.openOnX()
    }

    Shortcut {
        sequences: ["Ctrl+PgUp"]
        enabled: main.isFree && !main.isReaderOpen && main.appModel.page > 0 // qmllint disable
        onActivated: main.appModel.requestPreviousPage()
    }

    Shortcut {
        sequences: ["Ctrl+PgDown"]
        enabled: main.isFree && !main.isReaderOpen && main.appModel.page + 1 < main.appModel.pageCount // qmllint disable
        onActivated: main.appModel.requestNextPage()
    }

    Shortcut {
        sequences: ["Ctrl+O"]
        enabled: main.isFree && main.appModel.hasLibrary
        onActivated: openPost.open()
    }

    Shortcut {
        sequences: ["Ctrl+,"]
        enabled: main.isFree
        onActivated: settings.open()
    }

    Shortcut {
        sequences: ["Ctrl+Q"]
        onActivated: main.close()
    }

    RowLayout {
        anchors.fill: parent
        spacing: 0

        Sidebar {
            id: sidebar

            Layout.fillHeight: true
            appModel: main.appModel
            isFolded: main.width < Measures.foldingWidth
            onSearchRequested: header.focusSearch()
            onHistoryRequested: history.open()
            onSettingsRequested: settings.open()
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
                id: header

                Layout.fillWidth: true
                Layout.preferredHeight: Measures.barHeight
                Layout.leftMargin: Measures.large
                Layout.rightMargin: Measures.large
                visible: !main.isReaderOpen
                appModel: main.appModel
                title: sidebar.currentTitle
                onLeftSearch: content.focusRows(true)
                onPostRequested: openPost.open()
            }

            ReaderHeader {
                Layout.fillWidth: true
                Layout.preferredHeight: Measures.barHeight
                Layout.leftMargin: Measures.large
                Layout.rightMargin: Measures.large
                visible: main.isReaderOpen
                appModel: main.appModel
                origin: sidebar.titleOf(main.appModel.placeBehind)
                onOpenedOnX: main.openOnX()
            }

            Hairline {}

            SearchScopeBar {
                Layout.fillWidth: true
                visible: !main.isReaderOpen && main.appModel.selection === "search" && main.appModel.searchQuery !== ""
                         && main.appModel.listedFilter !== "all"
                mailbox: sidebar.currentMailbox
                onWidened: main.appModel.requestSearchMailbox("all")
            }

            LibraryContent {
                id: content

                Layout.fillWidth: true
                Layout.fillHeight: true
                visible: !main.isReaderOpen
                appModel: main.appModel
                onOpenedOnX: address => Qt.openUrlExternally(address)
                onSettingsRequested: settings.open()
            }

            Loader {
                Layout.fillWidth: true
                Layout.fillHeight: true
                visible: main.isReaderOpen
                active: visible
                sourceComponent: PostPane {
                    appModel: main.appModel // qmllint disable unqualified
                }
                onLoaded: (item as PostPane).forceActiveFocus(Qt.OtherFocusReason)
            }

            Hairline {
                visible: sync.visible || limit.visible || status.visible
            }

            RateLimitNotice {
                id: limit

                Layout.fillWidth: true
                appModel: main.appModel
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
                errorShownElsewhere: main.appModel.isReaderOpen ? "" : content.shownError
            }
        }
    }

    SheetLoader {
        id: history

        appModel: main.appModel
        sourceComponent: SyncHistoryView {
            appModel: main.appModel // qmllint disable unqualified
        }
    }

    SheetLoader {
        id: settings

        appModel: main.appModel
        sourceComponent: SettingsView {
            appModel: main.appModel // qmllint disable unqualified
        }
    }

    SheetLoader {
        id: openPost

        appModel: main.appModel
        sourceComponent: OpenPostBox {
            appModel: main.appModel // qmllint disable unqualified
        }
    }
}
