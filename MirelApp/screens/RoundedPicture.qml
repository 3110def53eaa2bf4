import QtQuick
import Mirel.Screens

// A picture of the web that fills its place, with round corners. Empty until it has arrived, so that what
// lies below shows.
Item {
    id: picture

    required property url source
    required property real radius
    // The colour around the picture, which cuts its corners.
    required property color surround
    property string description: ""
    readonly property bool isReady: image.status === Image.Ready

    Image {
        id: image

        anchors.fill: parent
        source: picture.source
        sourceSize.width: picture.width
        sourceSize.height: picture.height
        fillMode: Image.PreserveAspectCrop
        asynchronous: true
        opacity: picture.isReady ? 1 : 0
        Accessible.role: Accessible.Graphic
        Accessible.name: picture.description
        Accessible.ignored: picture.description === ""

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.motion
                easing.type: Easing.OutCubic
            }
        }
    }

    // A frame whose inner edge is round and whose outer edge covers the corners.
    Rectangle {
        readonly property real thickness: Math.ceil(picture.radius * 0.45)

        anchors.fill: parent
        anchors.margins: -thickness
        visible: picture.isReady
        color: "transparent"
        radius: picture.radius + thickness
        border.width: thickness
        border.color: picture.surround
    }
}
