import QtQuick
import Mirel.Screens

// Chooses the order of the list.
PushButton {
    id: picker

    required property string sort
    readonly property var orders: [
        {
            "name": "newest",
            "text": "Newest"
        },
        {
            "name": "oldest",
            "text": "Oldest"
        },
        {
            "name": "author",
            "text": "Author"
        }
    ]

    signal sortRequested(string sort)

    objectName: "sortPicker"
    isQuiet: true
    symbol: "chevron-down"
    symbolFollowsText: true
    text: orders.find(order => order.name === sort)?.text ?? ""
    tip: "Order of the list"
    Accessible.name: "Order of the list: " + text
    Accessible.role: Accessible.ButtonMenu
    onClicked: menu.popup(picker, picker.width - menu.width, picker.height + Measures.tiny)

    PopupMenu {
        id: menu

        objectName: "sortMenu"
        width: 176 * Measures.scale

        Repeater {
            model: picker.orders

            PopupMenuItem {
                required property var modelData

                objectName: "sort-" + modelData.name
                text: modelData.text
                checkable: true
                checked: picker.sort === modelData.name // qmllint disable unqualified
                onTriggered: picker.sortRequested(modelData.name) // qmllint disable unqualified
            }
        }
    }
}
