import QtQuick
import QtQuick.Controls.Basic
import Mirel.Screens

// An entry of a menu, with a second line when `detail` says something.
MenuItem {
    id: item

    property string detail: ""
    property string shortcutText: ""

    leftPadding: Measures.medium
    rightPadding: Measures.medium
    topPadding: Measures.small
    bottomPadding: Measures.small
    font.pixelSize: Measures.controlText
    Accessible.name: text
    Accessible.description: detail

    indicator: null
    // qmllint disable deferred-property-id
    contentItem: Item {
        implicitWidth: texts.implicitWidth + (item.checkable || shortcut.text !== "" ? Measures.huge * 3 : 0)
        implicitHeight: texts.implicitHeight

        Column {
            id: texts

            spacing: Measures.tiny

            PlainLabel {
                text: item.text
                font.pixelSize: Measures.controlText
                font.weight: item.checked ? Measures.strong : Font.Normal
            }

            PlainLabel {
                visible: text !== ""
                width: 264
                text: item.detail
                color: Theme.secondary
                font.pixelSize: Measures.metaText
                wrapMode: Text.Wrap
            }
        }

        PlainLabel {
            id: shortcut

            anchors.right: parent.right
            text: item.shortcutText
            color: Theme.secondary
        }

        Icon {
            anchors.right: parent.right
            visible: item.checked
            symbol: "check"
            color: Theme.tint
        }
    }
    background: Rectangle {
        radius: Measures.controlRadius
        color: item.highlighted ? Theme.current : "transparent"
    }
}
