import QtQuick
import Mirel.Screens

// Where the rows will be. Shows itself only when they keep one waiting.
Item {
    id: skeleton

    property bool isLate: false

    objectName: "skeletonList"
    clip: true
    Accessible.role: Accessible.StaticText
    Accessible.name: "Loading local library…"

    Timer {
        interval: 150
        running: skeleton.visible
        onTriggered: skeleton.isLate = true
    }

    Column {
        visible: skeleton.isLate
        width: Math.min(parent.width - 2 * Measures.small, Measures.widestList)
        x: (parent.width - width) / 2
        y: Measures.small

        Repeater {
            model: 12

            Item {
                id: row

                required property int index

                width: parent ? parent.width : 0
                height: Measures.avatar + 2 * Measures.huge + Measures.large

                Rectangle {
                    x: Measures.huge
                    y: Measures.medium
                    width: Measures.avatar
                    height: Measures.avatar
                    radius: width / 2
                    color: Theme.border
                }

                Column {
                    x: Measures.avatar + Measures.huge + Measures.medium
                    y: Measures.medium + Measures.tiny
                    spacing: Measures.medium

                    Repeater {
                        model: [0.24, 0.86, 0.5 + 0.05 * (row.index % 5)]

                        Rectangle {
                            required property double modelData

                            width: (row.width - Measures.avatar - 3 * Measures.huge) * modelData // qmllint disable unqualified
                            height: Measures.medium
                            radius: Measures.tiny
                            color: Theme.border
                        }
                    }
                }
            }
        }
    }
}
