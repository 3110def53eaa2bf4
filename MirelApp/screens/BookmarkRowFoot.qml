import QtQuick
import Mirel.Screens

// The labels and the counters of a bookmark, and what can be done with it.
Item {
    id: foot

    required property var labels
    required property var metrics
    required property color quiet
    required property bool showsActions
    required property bool isRoomy

    signal opened

    implicitHeight: Math.max(details.implicitHeight, open.height - Measures.small)

    Flow {
        id: details

        anchors.left: parent.left
        anchors.right: open.left
        anchors.rightMargin: foot.isRoomy ? Measures.small : 0
        anchors.verticalCenter: parent.verticalCenter
        spacing: foot.isRoomy ? Measures.medium : Measures.small

        Repeater {
            model: foot.labels

            LabelChip {
                required property var modelData

                name: modelData.name
                colorHex: modelData.colorHex
            }
        }

        PostCounters {
            metrics: foot.metrics
            color: foot.quiet
            spacing: details.spacing
        }
    }

    // Its place is kept, so that nothing moves when it comes.
    Loader {
        id: open

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: Measures.controlHeight
        height: Measures.controlHeight
        active: foot.showsActions
        sourceComponent: IconButton {
            objectName: "openOnX"
            focusPolicy: Qt.NoFocus
            symbol: "external-link"
            text: "Open on X"
            onClicked: foot.opened() // qmllint disable unqualified
        }
    }
}
