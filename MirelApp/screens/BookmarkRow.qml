import QtQuick
import Mirel.Screens

// One bookmark of the list. Rows are made while one types, a screen full at a time: what most of them never show
// is made only where it is shown.
Item {
    id: row

    required property int index
    required property double bookmarkID
    required property double authorID
    required property string authorName
    required property string authorUsername
    required property string authorInitials
    required property url profileImageURL
    required property date createdAt
    required property string title
    required property string text
    required property url sourceURL
    required property var media
    required property var metrics
    required property var labels
    required property bool isRead
    required property bool isFavorite

    // The part of the list that is on the screen, in the coordinates of the list's content.
    required property real shownTop
    required property real shownBottom
    property bool isPooled: false
    property bool isCurrent: false
    property bool hasKeyboard: false
    readonly property bool isOnScreen: !isPooled && y < shownBottom && y + height > shownTop
    readonly property real textLeft: avatar.x + avatar.width + Measures.medium
    readonly property real textWidth: width - textLeft - Measures.large
    readonly property string snippet: Display.snippet(text)
    readonly property bool isRoomy: width >= Measures.roomyRow
    readonly property bool isHovered: hover.hovered
    readonly property color surface: isCurrent ? Theme.current : isHovered ? Theme.hovered : Theme.surface
    // The quietest colour is only readable on the plain surface.
    readonly property color quiet: isCurrent || isHovered ? Theme.secondary : Theme.tertiary

    signal chosen
    signal opened
    signal openedOnX

    objectName: "bookmarkRow"
    implicitHeight: Math.max(foot.y + foot.height, thumbnail.active ? thumbnail.y + thumbnail.height + Measures.tiny : 0) + Measures.medium
                    + Measures.hairline
    Accessible.role: Accessible.ListItem
    Accessible.name: (isRead ? "" : "Unread. ") + (isFavorite ? "Favorite. " : "") + authorName + ", @" + authorUsername + ", " + Display.fullDate(
                         createdAt) + ". " + (title === "" ? "" : title + ". ") + snippet
    Accessible.focusable: true
    Accessible.focused: hasKeyboard
    Accessible.selected: isCurrent
    Accessible.onPressAction: row.chosen()

    HoverHandler {
        id: hover
    }

    TapHandler {
        onTapped: row.chosen()
        onDoubleTapped: row.opened()
    }

    Rectangle {
        id: card

        anchors.fill: parent
        anchors.topMargin: Measures.tiny / 2
        anchors.bottomMargin: Measures.tiny / 2 + Measures.hairline
        radius: Measures.cardRadius
        color: row.surface
    }

    Rectangle {
        anchors.bottom: parent.bottom
        x: row.textLeft
        width: row.textWidth
        height: Measures.hairline
        color: Theme.border
    }

    Rectangle {
        objectName: "unreadDot"
        anchors.verticalCenter: avatar.verticalCenter
        x: Measures.small
        visible: !row.isRead
        width: Measures.small
        height: Measures.small
        radius: Measures.tiny
        color: Theme.tint
    }

    Avatar {
        id: avatar

        objectName: "avatar"
        x: Measures.small + Measures.large
        y: Measures.medium
        authorID: row.authorID
        initials: row.authorInitials
        picture: row.isOnScreen ? Display.webPicture(row.profileImageURL) : ""
        surround: row.surface
    }

    BookmarkRowHead {
        id: head

        x: row.textLeft
        y: Measures.medium
        width: row.textWidth
        authorName: row.authorName
        authorUsername: row.authorUsername
        createdAt: row.createdAt
        isRead: row.isRead
        isFavorite: row.isFavorite
        quiet: row.quiet
    }

    Column {
        id: texts

        anchors.top: head.bottom
        anchors.topMargin: Measures.tiny
        x: row.textLeft
        width: thumbnail.active ? thumbnail.x - x - (row.isRoomy ? Measures.large : Measures.medium) : row.textWidth
        spacing: Measures.tiny

        Text {
            objectName: "title"
            width: parent.width
            visible: row.title !== ""
            text: Display.snippet(row.title)
            textFormat: Text.PlainText
            color: Theme.text
            font.pixelSize: Measures.postText
            font.weight: Measures.strong
            lineHeightMode: Text.FixedHeight
            lineHeight: Measures.postLine
            wrapMode: Text.Wrap
            maximumLineCount: 2
            elide: Text.ElideRight
        }

        Text {
            objectName: "text"
            width: parent.width
            visible: text !== ""
            text: row.snippet
            textFormat: Text.PlainText
            color: row.title === "" ? Theme.text : Theme.secondary
            font.pixelSize: Measures.postText
            lineHeightMode: Text.FixedHeight
            lineHeight: Measures.postLine
            wrapMode: Text.Wrap
            maximumLineCount: row.title === "" ? 3 : 2
            elide: Text.ElideRight
        }
    }

    BookmarkRowFoot {
        id: foot

        anchors.top: texts.bottom
        anchors.topMargin: (texts.height > 0 ? 2 : 1) * Measures.tiny
        x: row.textLeft
        width: texts.width
        labels: row.labels
        metrics: row.metrics
        quiet: row.quiet
        isRoomy: row.isRoomy
        showsActions: row.isHovered || row.hasKeyboard
        onOpened: row.openedOnX()
    }

    Loader {
        id: thumbnail

        anchors.right: parent.right
        anchors.rightMargin: Measures.large
        anchors.top: texts.top
        anchors.topMargin: Measures.tiny
        width: row.isRoomy ? Measures.thumbnailWidth : Measures.smallThumbnailWidth
        height: row.isRoomy ? Measures.thumbnailHeight : Measures.smallThumbnailHeight
        active: row.media.length > 0
        sourceComponent: Thumbnail {
            media: row.media // qmllint disable unqualified
            loads: row.isOnScreen // qmllint disable unqualified
            surround: row.surface // qmllint disable unqualified
        }
    }

    Loader {
        anchors.fill: card
        active: row.hasKeyboard
        sourceComponent: FocusRing {
            radius: Measures.cardRadius
        }
    }
}
