import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Templates as T
import Mirel.Screens

// The post that is selected or open, as a page that scrolls.
T.Control {
    id: pane

    required property MirelAppModel appModel
    readonly property var shownPost: appModel.shownPost
    readonly property bool isEmpty: shownPost === null
    // The last post there was: what shows it never stands without one.
    property var post: null
    property double postID: 0

    function take() {
        if (shownPost === null)
            return;
        post = shownPost;
        if (postID !== post.bookmarkID)
            page.contentY = 0;
        postID = post.bookmarkID;
    }

    function scrollBy(distance: real) {
        page.contentY = Math.max(0, Math.min(Math.max(0, page.contentHeight - page.height), page.contentY + distance));
    }

    objectName: "postPane"
    focusPolicy: isEmpty ? Qt.NoFocus : Qt.TabFocus
    Accessible.role: Accessible.Document
    Accessible.name: isEmpty ? "No post is selected" : "Post by " + shownPost.authorName
    Accessible.focusable: true
    Accessible.focused: activeFocus

    onShownPostChanged: take()
    Component.onCompleted: take()

    Keys.onPressed: event => {
        const line = 3 * Measures.readingLine;
        const screen = page.height - line;
        const steps = new Map([[Qt.Key_Down, line], [Qt.Key_Up, -line], [Qt.Key_PageDown, screen], [Qt.Key_Space, screen],
            [Qt.Key_PageUp, -screen], [Qt.Key_Home, -page.contentHeight], [Qt.Key_End, page.contentHeight]]);
        if (!steps.has(event.key))
            return;
        pane.scrollBy(steps.get(event.key));
        event.accepted = true;
    }

    Flickable {
        id: page

        anchors.fill: parent
        visible: !pane.isEmpty
        clip: true
        contentWidth: width
        contentHeight: content.height + 2 * Measures.huge
        boundsBehavior: Flickable.StopAtBounds

        Loader {
            id: content

            x: Math.max(Measures.huge, (page.width - width) / 2)
            y: Measures.huge
            width: Math.min(page.width - 2 * Measures.huge, Measures.readingWidth)
            active: pane.post !== null
            sourceComponent: PostBody {
                post: pane.post // qmllint disable unqualified
            }
        }

        ScrollBar.vertical: PageScrollBar {
            name: "Position in the post"
        }
    }

    StatePanel {
        objectName: "nothingSelected"
        anchors.fill: parent
        visible: pane.isEmpty
        symbol: "book-open-check"
        title: "Select a bookmark"
        explanation: "Preview it here. Double-click any row to open the full Reader."
    }

    FocusRing {
        anchors.margins: Measures.tiny
        visible: pane.visualFocus
    }
}
