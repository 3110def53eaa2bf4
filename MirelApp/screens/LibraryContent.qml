import QtQuick
import Mirel.Screens

// The rows, or what stands in their place.
Rectangle {
    id: content

    required property MirelAppModel appModel
    readonly property bool isEmptyLibrary: appModel.counts.all === 0
    readonly property string shown: {
        if (!appModel.hasLibrary)
            return "unavailable";
        if (appModel.bookmarks.count > 0)
            return "rows";
        if (!appModel.hasLoaded || (appModel.isSyncing && isEmptyLibrary))
            return "loading";
        return appModel.hasListingFailed ? "failed" : "empty";
    }

    signal opened(url address)

    function focusRows() {
        list.forceActiveFocus(Qt.OtherFocusReason);
    }

    color: Theme.surface

    BookmarkList {
        id: list

        anchors.fill: parent
        visible: content.shown === "rows"
        bookmarks: content.appModel.bookmarks
        onOpened: address => content.opened(address)
    }

    SkeletonList {
        anchors.fill: parent
        visible: content.shown === "loading"
    }

    StatePanel {
        objectName: "emptyState"
        anchors.fill: parent
        visible: content.shown === "empty"
        symbol: "bookmark"
        title: "No bookmarks"
        explanation: content.appModel.xConfigured || !content.isEmptyLibrary ? "Sync X or adjust the current filters." :
                                                                               "Add your X connection in Settings, then sync."
        commandHint: command === "" ? "" : "Until Mirel has its Settings, import the connection in a terminal. The file README.md tells what to put into credentials.json."
        command: content.appModel.xConfigured || !content.isEmptyLibrary ? "" :
                                                                           "Mirel --import-credentials-stdin < credentials.json"

        PushButton {
            objectName: "showAll"
            visible: content.appModel.libraryFilter !== "all"
            text: "Show All Bookmarks"
            onClicked: content.appModel.requestMailbox("all")
        }

        PushButton {
            objectName: "emptySync"
            isPrimary: true
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
        explanation: content.appModel.lastError + "\nNothing was changed. Try again; if it fails again, check that the disk is mounted and has free space."

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

    // Another page, mailbox or order begins at its top.
    Connections {
        property bool isTurning: false

        target: content.appModel

        function onPlaceChanged() {
            isTurning = true;
        }

        function onLibraryChanged() {
            if (!isTurning)
                return;
            isTurning = false;
            list.currentIndex = list.activeFocus ? 0 : -1;
            list.positionViewAtBeginning();
        }
    }
}
