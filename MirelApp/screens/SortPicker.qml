import QtQuick
import Mirel.Screens

// Chooses the order of the list.
PushButton {
    id: picker

    required property string sort
    // Only an icon.
    property bool isCompact: false
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

    readonly property string orderText: orders.find(order => order.name === sort)?.text ?? ""

    signal sortRequested(string sort)

    objectName: "sortPicker"
    isQuiet: true
    symbol: isCompact ? "arrow-down-up" : "chevron-down"
    symbolFollowsText: true
    text: isCompact ? "" : orderText
    tip: isCompact ? "Order of the list: " + orderText : "Order of the list"
    Accessible.name: "Order of the list: " + orderText
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
