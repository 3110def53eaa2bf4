import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import QtQuick.Templates as T
import Mirel.Screens

// The rows with a preview of the selected one where there is room, or what stands in their place.
Rectangle {
    id: content

    required property MirelAppModel appModel
    // Of the rows beside a preview, as the user drags it.
    property real listWidth: Measures.listColumn
    readonly property bool hasPreview: width >= Measures.narrowestListColumn + Measures.narrowestPreview
    readonly property bool isEmptyLibrary: appModel.counts.all === 0
    // Of the last reading: until the next one has ended, nothing is known of the new place.
    property bool isNoMatch: false
    // There is nothing to show meanwhile.
    property bool isSlow: false
    readonly property string shown: {
        if (!appModel.hasLibrary)
            return "unavailable";
        if (appModel.bookmarks.count > 0)
            return "rows";
        if (!appModel.hasLoaded || isSlow || (appModel.isSyncing && isEmptyLibrary))
            return "loading";
        return appModel.hasListingFailed ? "failed" : "empty";
    }

    // The error that stands in place of the rows; empty when none does.
    readonly property string shownError: {
        if (shown === "unavailable")
            return appModel.lastError;
        return shown === "failed" ? appModel.listingError : "";
    }

    signal openedOnX(url address)
    signal settingsRequested

    // Brings the keyboard to the rows; without a current one it takes up the first if `takesUpRow`.
    function focusRows(takesUpRow: bool) {
        list.takesUpRow = takesUpRow;
        list.forceActiveFocus(Qt.OtherFocusReason);
        list.takesUpRow = true;
    }

    color: Theme.surface

    SplitView {
        id: columns

        anchors.fill: parent
        visible: content.shown === "rows"

        handle: Rectangle {
            id: grip

            implicitWidth: Measures.hairline
            color: T.SplitHandle.pressed || T.SplitHandle.hovered ? Theme.tint : Theme.border
            containmentMask: Item {
                x: -Measures.tiny
                width: 2 * Measures.tiny + Measures.hairline
                height: grip.height
            }
        }

        ColumnLayout {
            id: listColumn

            SplitView.preferredWidth: content.listWidth
            SplitView.minimumWidth: content.hasPreview ? Measures.narrowestListColumn : 0
            SplitView.maximumWidth: content.hasPreview ? Math.min(Measures.widestListColumn, content.width - Measures.narrowestPreview) :
                                                         Infinity
            SplitView.fillWidth: !content.hasPreview
            spacing: 0
            onWidthChanged: {
                if (columns.resizing)
                    content.listWidth = width;
            }

            BookmarkList {
                id: list

                Layout.fillWidth: true
                Layout.fillHeight: true
                bookmarks: content.appModel.bookmarks
                selectedID: content.appModel.selectedBookmarkID // qmllint disable
                onChosen: bookmarkID => content.appModel.requestSelection(bookmarkID)
                onOpened: bookmarkID => content.appModel.requestReader(bookmarkID)
                onOpenedOnX: address => content.openedOnX(address)
            }

            Hairline {
                visible: paging.visible
            }

            PagingBar {
                id: paging

                Layout.fillWidth: true
                appModel: content.appModel
            }
        }

        Loader {
            SplitView.fillWidth: true
            SplitView.minimumWidth: Measures.narrowestPreview
            visible: content.hasPreview
            active: visible && !content.appModel.isReaderOpen
            sourceComponent: PostPane {
                appModel: content.appModel // qmllint disable unqualified
            }
        }
    }

    SkeletonList {
        anchors.fill: parent
        visible: content.shown === "loading"
    }

    StatePanel {
        objectName: "emptyState"
        anchors.fill: parent
        visible: content.shown === "empty"
        symbol: content.isNoMatch ? "search" : "bookmark"
        title: content.isNoMatch ? "No search results" : "No bookmarks"
        explanation: content.appModel.xConfigured || !content.isEmptyLibrary ? "Sync X or adjust the current filters." :
                                                                               "Add your X connection in Settings, then sync."

        PushButton {
            objectName: "clearRefinements"
            isPrimary: true
            visible: content.isNoMatch
            text: "Clear"
            tip: "Shows what the search and the filters hide"
            onClicked: content.appModel.requestReset()
        }

        PushButton {
            objectName: "showAll"
            visible: content.appModel.listedFilter !== "all" && !content.isNoMatch && !content.isEmptyLibrary
            text: "Show All Bookmarks"
            onClicked: content.appModel.requestMailbox("all")
        }

        PushButton {
            objectName: "emptySettings"
            visible: !content.isNoMatch && content.isEmptyLibrary && !content.appModel.xConfigured
            isPrimary: true
            symbol: "settings"
            text: "Settings"
            tip: "Connect your X account (Ctrl+,)"
            onClicked: content.settingsRequested()
        }

        PushButton {
            objectName: "emptySync"
            visible: !content.isNoMatch
            isPrimary: content.appModel.xConfigured || !content.isEmptyLibrary
            enabled: !content.appModel.isSyncing
            symbol: "refresh-cw"
            text: "Quick Sync"
            tip: "Quick Sync checks recent pages. Use the menu for a full X scan. (Ctrl+R)"
            onClicked: content.appModel.requestSync(false)
        }
    }

    StatePanel {
        objectName: "failedState"
        anchors.fill: parent
        visible: content.shown === "failed"
        symbol: "triangle-alert"
        symbolColor: Theme.failure
        title: "The library could not be read"
        explanation: content.appModel.listingError + "\nNothing was changed. Try again; if it fails again, check that the disk is mounted and has free space."

        PushButton {
            objectName: "retry"
            isPrimary: true
            text: "Try Again"
            tip: "Reads the library again (F5)"
            onClicked: content.appModel.requestRefresh()
        }
    }

    StatePanel {
        objectName: "unavailableState"
        anchors.fill: parent
        visible: content.shown === "unavailable"
        symbol: "database"
        symbolColor: Theme.failure
        title: "The library could not be opened"
        explanation: content.appModel.lastError + "\nNothing was changed. Correct what stands above, or restore the file from a backup, then start Mirel again."

        PushButton {
            objectName: "quit"
            isPrimary: true
            text: "Quit Mirel"
            tip: "Ctrl+Q"
            onClicked: Qt.quit()
        }
    }

    Timer {
        interval: 200
        running: content.appModel.isReadingLibrary && content.appModel.bookmarks.count === 0
        onRunningChanged: {
            if (!running && !content.appModel.isReadingLibrary)
                content.isSlow = false;
        }
        onTriggered: content.isSlow = true
    }

    // Another page, mailbox or order begins at its top, unless it holds the selected row.
    Connections {
        property bool isTurning: false

        target: content.appModel

        function onPlaceChanged() {
            isTurning = true;
        }

        function onLibraryChanged() {
            content.isNoMatch = content.appModel.isRefined && !content.isEmptyLibrary;
            if (!isTurning)
                return;
            isTurning = false;
            list.follow();
            if (list.currentIndex < 0 && list.activeFocus) {
                list.choose(0);
                list.goToBeginning();
            }
            if (list.currentIndex >= 0)
                list.positionViewAtIndex(list.currentIndex, ListView.Contain);
            else
                list.goToBeginning();
        }
    }
}
