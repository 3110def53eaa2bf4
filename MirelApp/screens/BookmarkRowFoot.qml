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

    implicitHeight: Math.max(details.implicitHeight, open.implicitHeight - Measures.small)

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

        Repeater {
            model: [
                {
                    "symbol": "message-circle",
                    "key": "replies"
                },
                {
                    "symbol": "repeat-2",
                    "key": "reposts"
                },
                {
                    "symbol": "heart",
                    "key": "likes"
                },
                {
                    "symbol": "chart-no-axes-column",
                    "key": "views"
                }
            ]

            Counter {
                required property var modelData

                symbol: modelData.symbol
                count: foot.metrics[modelData.key] // qmllint disable unqualified
                noun: modelData.key
                color: foot.quiet // qmllint disable unqualified
                visible: count > 0
                height: Math.max(implicitHeight, Math.round(18 * Measures.scale))
            }
        }
    }

    IconButton {
        id: open

        objectName: "openOnX"
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        opacity: foot.showsActions ? 1 : 0
        focusPolicy: Qt.NoFocus
        symbol: "external-link"
        text: "Open on X"
        onClicked: foot.opened()
    }
}
