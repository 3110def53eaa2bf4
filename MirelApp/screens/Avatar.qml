import QtQuick
import Mirel.Screens

// An author's picture, and until it is there the initials on a colour of the author's own.
Item {
    id: avatar

    required property double authorID
    required property string initials
    required property url picture
    required property color surround

    width: Measures.avatar
    height: Measures.avatar
    Accessible.ignored: true

    Rectangle {
        anchors.fill: parent
        visible: !loaded.isReady
        radius: width / 2
        color: Theme.avatarColor(avatar.authorID)

        PlainLabel {
            anchors.centerIn: parent
            text: avatar.initials
            color: Theme.readableOn(parent.color)
            font.pixelSize: Measures.controlText
            font.weight: Measures.strong
        }
    }

    RoundedPicture {
        id: loaded

        anchors.fill: parent
        source: avatar.picture
        radius: width / 2
        surround: avatar.surround
    }
}
