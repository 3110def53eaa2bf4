import QtQuick
import Mirel.Screens

// Starts the quick sync; its menu also has the full one.
Row {
    id: button

    // Only the icons.
    property bool isCompact: false

    signal syncRequested(bool fullScan)

    spacing: 0

    PushButton {
        id: quick

        objectName: "quickSync"
        joinsRight: true
        isPrimary: true
        symbol: "refresh-cw"
        text: button.isCompact ? "" : "Quick Sync"
        Accessible.name: "Quick Sync"
        tip: "Quick Sync checks recent pages. Use the menu for a full X scan. (Ctrl+R)"
        onClicked: button.syncRequested(false)
    }

    PushButton {
        id: more

        objectName: "syncMenuButton"
        joinsLeft: true

        Rectangle {
            width: Measures.hairline
            height: parent.height
            color: Theme.onTint
            opacity: 0.3
        }
        isPrimary: true
        symbol: "chevron-down"
        leftPadding: Measures.small
        rightPadding: Measures.small
        tip: "More ways to sync"
        Accessible.name: "More ways to sync"
        Accessible.role: Accessible.ButtonMenu
        onClicked: menu.popup(more, more.width - menu.width, more.height + Measures.tiny)

        PopupMenu {
            id: menu

            objectName: "syncMenu"
            width: 312 * Measures.scale

            PopupMenuItem {
                objectName: "quickSyncItem"
                enabled: button.enabled
                text: "Quick Sync"
                shortcutText: "Ctrl+R"
                detail: "Checks recent pages."
                onTriggered: button.syncRequested(false)
            }

            PopupMenuItem {
                objectName: "fullSyncItem"
                enabled: button.enabled
                text: "Full Sync"
                detail: "Checks every page X makes available. X may charge for each bookmark it reads out."
                onTriggered: button.syncRequested(true)
            }
        }
    }
}
