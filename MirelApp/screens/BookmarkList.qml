import QtQuick
import QtQuick.Controls.Basic
import Mirel.Screens

// The bookmarks of one page. The keyboard moves through them; rows off the screen load nothing.
ListView {
    id: list

    required property BookmarkListModel bookmarks
    readonly property real rowWidth: Math.min(width - 2 * Measures.small, Measures.widestList)

    signal opened(url address)

    function moveBy(rows: int) {
        currentIndex = Math.max(0, Math.min(count - 1, currentIndex + rows));
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
    keyNavigationEnabled: true
    currentIndex: -1
    highlightMoveDuration: 0
    highlightFollowsCurrentItem: true
    topMargin: Measures.small
    bottomMargin: Measures.small
    Accessible.role: Accessible.List
    Accessible.name: "Bookmarks"

    onActiveFocusChanged: {
        if (activeFocus && currentIndex < 0 && count > 0)
            currentIndex = Math.max(0, indexAt(width / 2, contentY + Measures.large));
    }

    Keys.onPressed: event => {
        switch (event.key) {
        case Qt.Key_Home:
            list.currentIndex = 0;
            list.positionViewAtBeginning();
            break;
        case Qt.Key_End:
            list.currentIndex = list.count - 1;
            break;
        case Qt.Key_PageDown:
            list.moveBy(list.rowsOfAPage());
            break;
        case Qt.Key_PageUp:
            list.moveBy(-list.rowsOfAPage());
            break;
        case Qt.Key_Return:
        case Qt.Key_Enter:
            if (list.currentItem)
                list.opened((list.currentItem as BookmarkRow).sourceURL);
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
            list.currentIndex = delegate.index;
            list.forceActiveFocus(Qt.MouseFocusReason);
        }
        onOpened: list.opened(delegate.sourceURL)
        ListView.onPooled: isPooled = true
        ListView.onReused: isPooled = false
    }
    // qmllint enable unqualified

    ScrollBar.vertical: ScrollBar {
        id: scrollBar

        policy: list.contentHeight > list.height ? ScrollBar.AsNeeded : ScrollBar.AlwaysOff
        Accessible.name: "Position in the list"
        contentItem: Rectangle {
            implicitWidth: Measures.small
            radius: width / 2
            color: Theme.tertiary
            opacity: scrollBar.pressed ? 0.9 : scrollBar.hovered ? 0.7 : 0.35
        }
    }
}
