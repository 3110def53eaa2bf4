import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// Who wrote a bookmarked post, and when.
RowLayout {
    id: head

    required property string authorName
    required property string authorUsername
    required property date createdAt
    required property bool isRead
    required property bool isFavorite
    required property color quiet

    spacing: Measures.small

    PlainLabel {
        objectName: "authorName"
        Layout.preferredHeight: Measures.controlLine
        Layout.fillWidth: true
        Layout.maximumWidth: Math.ceil(implicitWidth)
        text: head.authorName
        font.weight: head.isRead ? Font.Normal : Measures.strong
    }

    PlainLabel {
        objectName: "authorUsername"
        Layout.preferredHeight: Measures.controlLine
        Layout.fillWidth: true
        Layout.minimumWidth: Measures.huge
        text: "@" + head.authorUsername
        color: Theme.secondary
    }

    Loader {
        active: head.isFavorite
        visible: active
        sourceComponent: Icon {
            objectName: "favoriteMark"
            symbol: "star"
            size: Math.round(14 * Measures.scale)
            color: Theme.warning
        }
    }

    PlainLabel {
        id: date

        objectName: "date"
        text: Display.relativeDate(head.createdAt, Display.now)
        color: head.quiet
        font.pixelSize: Measures.metaText

        HoverHandler {
            id: dateHover
        }

        Loader {
            anchors.fill: parent
            active: dateHover.hovered
            sourceComponent: HoverTip {
                text: Display.fullDate(head.createdAt) // qmllint disable unqualified
            }
        }
    }
}
