import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// What the list shows, in which order, and the way to more of it.
RowLayout {
    id: header

    required property MirelAppModel appModel
    required property string title

    spacing: Measures.small

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 0

        PlainLabel {
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

    SortPicker {
        enabled: header.appModel.hasLibrary
        sort: header.appModel.librarySort
        onSortRequested: sort => header.appModel.requestSort(sort)
    }

    SyncButton {
        enabled: header.appModel.hasLibrary && !header.appModel.isSyncing
        onSyncRequested: fullScan => header.appModel.requestSync(fullScan)
    }
}
