import QtQuick
import Mirel.Screens

// The first of a post's pictures, with a mark for what plays and the number of the others.
Item {
    id: thumbnail

    required property var media
    required property bool loads
    required property color surround
    readonly property var first: media.length > 0 ? media[0] : null
    readonly property bool plays: first !== null && first.kind !== "photo"

    objectName: "thumbnail"
    visible: first !== null
    width: Measures.thumbnailWidth
    height: Measures.thumbnailHeight

    Rectangle {
        anchors.fill: parent
        visible: !picture.isReady
        radius: Measures.controlRadius
        color: Theme.background
        border.width: Measures.hairline
        border.color: Theme.border

        Loader {
            anchors.centerIn: parent
            active: !thumbnail.plays && !picture.isReady
            sourceComponent: Icon {
                symbol: "image"
                size: Measures.icon
                color: Theme.tertiary
            }
        }
    }

    RoundedPicture {
        id: picture

        anchors.fill: parent
        source: thumbnail.loads && thumbnail.first !== null ? Display.webPicture(thumbnail.first.url) : ""
        radius: Measures.controlRadius
        surround: thumbnail.surround
        description: thumbnail.first === null ? "" : thumbnail.first.altText
    }

    Loader {
        anchors.centerIn: parent
        active: thumbnail.plays
        sourceComponent: Rectangle {
            implicitWidth: 32
            implicitHeight: 32
            radius: 16
            color: Theme.veil

            Icon {
                anchors.centerIn: parent
                symbol: "play"
                color: Theme.onVeil
            }
        }
    }

    Loader {
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: Measures.tiny
        active: thumbnail.media.length > 1
        sourceComponent: Rectangle {
            implicitWidth: others.implicitWidth + Measures.small
            implicitHeight: others.implicitHeight + Measures.tiny
            radius: Measures.tiny
            color: Theme.veil

            PlainLabel {
                id: others

                anchors.centerIn: parent
                text: "+" + (thumbnail.media.length - 1) // qmllint disable unqualified
                color: Theme.onVeil
                font.pixelSize: Measures.metaText
                font.weight: Measures.strong
            }
        }
    }
}
