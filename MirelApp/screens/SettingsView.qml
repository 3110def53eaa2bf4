import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Mirel.Screens

// The settings, as a page that scrolls.
Sheet {
    id: view

    required property MirelAppModel appModel

    objectName: "settings"
    title: "Settings"
    height: Math.min(roomiestHeight, implicitHeight)
    messages: appModel
    onOpened: connections.take()
    // Secrets are not kept where anybody could look for them.
    onClosed: connections.forgetSecrets()

    Flickable {
        id: page

        objectName: "settingsPage"
        Layout.fillWidth: true
        Layout.fillHeight: true
        implicitHeight: parts.implicitHeight + 2 * Measures.huge
        clip: true
        contentWidth: width
        contentHeight: implicitHeight
        boundsBehavior: Flickable.StopAtBounds

        // The control that has the keyboard is never out of sight.
        function reveal(control: Item) {
            const top = control.mapToItem(parts, 0, 0).y + Measures.huge;
            const bottom = top + control.height + Measures.huge;
            contentY = Math.max(0, Math.min(Math.max(contentY, bottom - height), top - Measures.huge));
        }

        ScrollBar.vertical: PageScrollBar {
            name: "Position in the settings"
        }

        ColumnLayout {
            id: parts

            x: Measures.huge
            y: Measures.huge
            width: page.width - 2 * Measures.huge
            spacing: Measures.huge

            ConnectionSettings {
                id: connections

                Layout.fillWidth: true
                appModel: view.appModel
            }

            Hairline {}

            DangerZone {
                Layout.fillWidth: true
                appModel: view.appModel
            }
        }
    }

    Connections {
        target: page.Window.window

        function onActiveFocusItemChanged() {
            const control = page.Window.activeFocusItem;
            for (let holder = control; holder !== null; holder = holder.parent) {
                if (holder === parts)
                    return page.reveal(control);
            }
        }
    }
}
