import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// What the list shows, in which order, and the ways to something else.
RowLayout {
    id: header

    required property MirelAppModel appModel
    required property string title
    readonly property bool isRoomy: width >= Measures.roomyHeader

    signal leftSearch
    signal postRequested

    function focusSearch() {
        search.forceActiveFocus(Qt.ShortcutFocusReason);
        search.selectAll();
    }

    spacing: Measures.small

    IconButton {
        objectName: "goBack"
        visible: header.appModel.canGoBack
        symbol: "arrow-left"
        text: "Back (Alt+Left)"
        Accessible.name: "Back"
        onClicked: header.appModel.requestBack()
    }

    ColumnLayout {
        Layout.fillWidth: true
        Layout.leftMargin: header.appModel.canGoBack ? 0 : Measures.small
        Layout.minimumWidth: Math.min(title.implicitWidth, Measures.headerTitle)
        spacing: 0

        PlainLabel {
            id: title

            objectName: "libraryTitle"
            Layout.fillWidth: true
            text: header.title
            font.pixelSize: Measures.titleText
            font.weight: Measures.strong
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        PlainLabel {
            objectName: "resultCount"
            Layout.fillWidth: true
            visible: header.appModel.hasLoaded && header.appModel.hasLibrary
            text: Display.number(header.appModel.libraryResultCount) + " results" // qmllint disable
            color: Theme.secondary
            font.pixelSize: Measures.metaText
        }
    }

    SearchField {
        id: search

        Layout.fillWidth: true
        Layout.minimumWidth: Measures.narrowestSearch
        Layout.maximumWidth: Measures.searchWidth
        Layout.preferredWidth: Measures.searchWidth
        enabled: header.appModel.hasLibrary
        query: header.appModel.searchQuery
        isBusy: header.appModel.isReadingLibrary && header.appModel.selection === "search"
        onBegun: header.appModel.requestSearchPreparation()
        onEdited: query => header.appModel.requestSearch(query)
        onFinished: header.leftSearch()
    }

    // The search alone gives way where it is tight.
    SortPicker {
        Layout.minimumWidth: implicitWidth
        isCompact: !header.isRoomy
        enabled: header.appModel.hasLibrary
        sort: header.appModel.librarySort
        onSortRequested: sort => header.appModel.requestSort(sort)
    }

    IconButton {
        objectName: "openPost"
        Layout.minimumWidth: implicitWidth
        enabled: header.appModel.hasLibrary
        symbol: "link"
        text: "Open X bookmark (Ctrl+O)"
        Accessible.name: "Open X bookmark"
        onClicked: header.postRequested()
    }

    SyncButton {
        Layout.minimumWidth: implicitWidth
        isCompact: !header.isRoomy
        enabled: header.appModel.hasLibrary && !header.appModel.isSyncing
        onSyncRequested: fullScan => header.appModel.requestSync(fullScan)
    }
}
