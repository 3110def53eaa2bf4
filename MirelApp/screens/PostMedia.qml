import QtQuick
import Mirel.Screens

// One picture or film of a post, in its own proportions; its place stands before it has arrived.
Item {
    id: media

    required property var item
    readonly property bool plays: item.kind !== "photo"
    readonly property real proportion: item.width > 0 && item.height > 0 ? item.height / item.width : 9 / 16

    objectName: "postMedia"
    implicitHeight: Math.min(width * proportion, Measures.tallestPicture)
    Accessible.role: Accessible.Graphic
    Accessible.name: item.altText !== "" ? item.altText : plays ? "Video" : "Picture"

    Rectangle {
        anchors.fill: parent
        visible: !picture.isReady
        radius: Measures.cardRadius
        color: Theme.background
        border.width: Measures.hairline
        border.color: Theme.border

        Icon {
            anchors.centerIn: parent
            visible: !media.plays
            symbol: "image"
            size: Measures.largeIcon
            color: Theme.tertiary
        }
    }

    RoundedPicture {
        id: picture

        anchors.fill: parent
        source: Display.webPicture(media.item.url)
        radius: Measures.cardRadius
        surround: Theme.surface
    }

    Rectangle {
        anchors.centerIn: parent
        visible: media.plays
        width: 56
        height: 56
        radius: 28
        color: Theme.veil

        Icon {
            anchors.centerIn: parent
            symbol: "play"
            size: Measures.icon
            color: Theme.onVeil
        }
    }
}
