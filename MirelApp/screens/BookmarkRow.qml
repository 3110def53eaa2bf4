import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// One bookmark of the list.
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
    readonly property bool isRoomy: width >= Measures.roomyRow
    readonly property bool isHovered: hover.hovered
    readonly property color surface: isCurrent ? Theme.current : isHovered ? Theme.hovered : Theme.surface
    // The quietest colour is only readable on the plain surface.
    readonly property color quiet: isCurrent || isHovered ? Theme.secondary : Theme.tertiary

    signal chosen
    signal opened
    signal openedOnX

    objectName: "bookmarkRow"
    implicitHeight: content.implicitHeight + 2 * Measures.medium + Measures.hairline
    Accessible.role: Accessible.ListItem
    Accessible.name: (isRead ? "" : "Unread. ") + (isFavorite ? "Favorite. " : "") + authorName + ", @" + authorUsername + ", " + Display.fullDate(
                         createdAt) + ". " + (title === "" ? "" : title + ". ") + Display.snippet(text)
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
        anchors.right: parent.right
        anchors.rightMargin: Measures.large
        anchors.left: parent.left
        anchors.leftMargin: content.x + body.x
        height: Measures.hairline
        color: Theme.border
    }

    RowLayout {
        id: content

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.leftMargin: Measures.small
        anchors.rightMargin: Measures.large
        anchors.topMargin: Measures.medium
        spacing: Measures.medium

        Item {
            Layout.alignment: Qt.AlignTop
            implicitWidth: Measures.avatar + Measures.large
            implicitHeight: Measures.avatar

            Rectangle {
                z: 1
                objectName: "unreadDot"
                anchors.verticalCenter: parent.verticalCenter
                visible: !row.isRead
                width: Measures.small
                height: Measures.small
                radius: Measures.tiny
                color: Theme.tint
            }

            Avatar {
                objectName: "avatar"
                x: Measures.large
                authorID: row.authorID
                initials: row.authorInitials
                picture: row.isOnScreen ? Display.webPicture(row.profileImageURL) : ""
                surround: row.surface
            }
        }

        ColumnLayout {
            id: body

            Layout.fillWidth: true
            Layout.alignment: Qt.AlignTop
            spacing: Measures.tiny

            BookmarkRowHead {
                Layout.fillWidth: true
                authorName: row.authorName
                authorUsername: row.authorUsername
                createdAt: row.createdAt
                isRead: row.isRead
                isFavorite: row.isFavorite
                quiet: row.quiet
            }

            RowLayout {
                Layout.fillWidth: true
                spacing: row.isRoomy ? Measures.large : Measures.medium

                ColumnLayout {
                    Layout.fillWidth: true
                    Layout.alignment: Qt.AlignTop
                    spacing: Measures.tiny

                    Text {
                        objectName: "title"
                        Layout.fillWidth: true
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
                        Layout.fillWidth: true
                        visible: text !== ""
                        text: Display.snippet(row.text)
                        textFormat: Text.PlainText
                        color: row.title === "" ? Theme.text : Theme.secondary
                        font.pixelSize: Measures.postText
                        lineHeightMode: Text.FixedHeight
                        lineHeight: Measures.postLine
                        wrapMode: Text.Wrap
                        maximumLineCount: row.title === "" ? 3 : 2
                        elide: Text.ElideRight
                    }

                    BookmarkRowFoot {
                        Layout.fillWidth: true
                        Layout.topMargin: Measures.tiny
                        labels: row.labels
                        metrics: row.metrics
                        quiet: row.quiet
                        isRoomy: row.isRoomy
                        showsActions: row.isHovered || row.hasKeyboard
                        onOpened: row.openedOnX()
                    }
                }

                Thumbnail {
                    Layout.alignment: Qt.AlignTop
                    Layout.topMargin: Measures.tiny
                    Layout.bottomMargin: Measures.tiny
                    Layout.preferredWidth: row.isRoomy ? Measures.thumbnailWidth : Measures.smallThumbnailWidth
                    Layout.preferredHeight: row.isRoomy ? Measures.thumbnailHeight : Measures.smallThumbnailHeight
                    media: row.media
                    loads: row.isOnScreen
                    surround: row.surface
                }
            }
        }
    }

    FocusRing {
        anchors.fill: card
        radius: Measures.cardRadius
        visible: row.hasKeyboard
    }
}
