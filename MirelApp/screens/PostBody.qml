import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// A post to be read: who wrote it and when, what it is, its text and its pictures.
ColumnLayout {
    id: body

    // As in `MirelAppModel.shownPost`.
    required property var post

    spacing: Measures.large

    RowLayout {
        Layout.fillWidth: true
        spacing: Measures.medium

        Avatar {
            authorID: body.post.authorID
            initials: body.post.authorInitials
            picture: Display.webPicture(body.post.profileImageURL)
            surround: Theme.surface
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 0

            PlainLabel {
                objectName: "postAuthor"
                Layout.fillWidth: true
                text: body.post.authorName
                font.pixelSize: Measures.postText
                font.weight: Measures.strong
            }

            PlainLabel {
                objectName: "postUsername"
                Layout.fillWidth: true
                text: "@" + body.post.authorUsername
                color: Theme.secondary
            }
        }
    }

    Text {
        objectName: "postTitle"
        Layout.fillWidth: true
        visible: text !== ""
        text: body.post.title
        textFormat: Text.PlainText
        color: Theme.text
        font.pixelSize: Measures.titleText
        font.weight: Measures.strong
        lineHeightMode: Text.FixedHeight
        lineHeight: Measures.titleLine
        wrapMode: Text.Wrap
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Text {
        objectName: "postText"
        Layout.fillWidth: true
        visible: text !== ""
        text: body.post.text
        textFormat: Text.PlainText
        color: Theme.text
        font.pixelSize: Measures.readingText
        lineHeightMode: Text.FixedHeight
        lineHeight: Measures.readingLine
        wrapMode: Text.Wrap
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Repeater {
        // By number, so that a picture stays when the rest of the post changes.
        model: body.post.media.length

        PostMedia {
            required property int index

            Layout.fillWidth: true
            item: body.post.media[index] // qmllint disable unqualified
        }
    }

    Flow {
        Layout.fillWidth: true
        visible: body.post.labels.length > 0
        spacing: Measures.small

        Repeater {
            model: body.post.labels

            LabelChip {
                required property var modelData

                name: modelData.name
                colorHex: modelData.colorHex
            }
        }
    }

    Flow {
        Layout.fillWidth: true
        spacing: Measures.small

        // Its place is kept until it is known.
        PlainLabel {
            objectName: "postKind"
            height: Measures.controlLine
            text: body.post.kind
            visible: text !== ""
            color: Theme.secondary
            font.weight: Measures.emphasis
        }

        PlainLabel {
            height: Measures.controlLine
            visible: body.post.kind !== ""
            text: "·"
            color: Theme.secondary
            Accessible.ignored: true
        }

        PlainLabel {
            objectName: "postDate"
            height: Measures.controlLine
            text: Display.fullDate(body.post.createdAt)
            color: Theme.secondary
        }
    }

    PostCounters {
        metrics: body.post.metrics
    }
}
