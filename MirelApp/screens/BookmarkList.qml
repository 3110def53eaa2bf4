import QtQuick
import QtQuick.Controls.Basic
import Mirel.Screens

// The bookmarks of one page. The keyboard moves through them; rows off the screen load nothing.
ListView {
    id: list

    required property BookmarkListModel bookmarks
    // The highlighted row, which the list only asks to change; 0: none.
    required property double selectedID
    // Whether the keyboard takes up a row as soon as it comes to the list.
    property bool takesUpRow: true
    readonly property real rowWidth: Math.min(width - 2 * Measures.small, Measures.widestList)

    signal chosen(double bookmarkID)
    signal opened(double bookmarkID)
    signal openedOnX(url address)

    function choose(row: int) {
        if (count > 0)
            chosen(bookmarks.idAt(Math.max(0, Math.min(count - 1, row))));
    }

    function goToBeginning() {
        positionViewAtBeginning();
        contentY = originY - topMargin;
    }

    function follow() {
        currentIndex = bookmarks.rowOf(selectedID);
    }

    function rowsOfAPage(): int {
        return count === 0 ? 0 : Math.max(1, Math.floor(height * count / contentHeight));
    }

    objectName: "bookmarkList"
    model: bookmarks
    clip: true
    reuseItems: true
    cacheBuffer: 0
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: true
    keyNavigationEnabled: false
    currentIndex: -1
    highlightMoveDuration: 0
    highlightFollowsCurrentItem: true
    topMargin: Measures.small
    bottomMargin: Measures.small
    Accessible.role: Accessible.List
    Accessible.name: "Bookmarks"

    onSelectedIDChanged: follow()
    onActiveFocusChanged: {
        if (activeFocus && takesUpRow && currentIndex < 0)
            choose(indexAt(width / 2, contentY + Measures.large));
    }

    Keys.onPressed: event => {
        switch (event.key) {
        case Qt.Key_Down:
            list.choose(list.currentIndex + 1);
            break;
        case Qt.Key_Up:
            list.choose(list.currentIndex - 1);
            break;
        case Qt.Key_Home:
            list.choose(0);
            list.goToBeginning();
            break;
        case Qt.Key_End:
            list.choose(list.count - 1);
            break;
        case Qt.Key_PageDown:
            list.choose(list.currentIndex + list.rowsOfAPage());
            break;
        case Qt.Key_PageUp:
            list.choose(list.currentIndex - list.rowsOfAPage());
            break;
        case Qt.Key_Return:
        case Qt.Key_Enter:
            if (list.currentIndex >= 0)
                list.opened(list.selectedID);
            break;
        default:
            return;
        }
        event.accepted = true;
    }

    // The rows live no longer than the list.
    // qmllint disable unqualified
    delegate: BookmarkRow {
        id: delegate

        width: list.rowWidth
        x: (list.width - width) / 2
        shownTop: list.contentY
        shownBottom: list.contentY + list.height
        isCurrent: ListView.isCurrentItem
        hasKeyboard: ListView.isCurrentItem && list.activeFocus
        onChosen: {
            list.chosen(delegate.bookmarkID);
            list.forceActiveFocus(Qt.MouseFocusReason);
        }
        onOpened: list.opened(delegate.bookmarkID)
        onOpenedOnX: list.openedOnX(delegate.sourceURL)
        ListView.onPooled: isPooled = true
        ListView.onReused: isPooled = false
    }
    // qmllint enable unqualified

    ScrollBar.vertical: PageScrollBar {
        name: "Position in the list"
    }
}
