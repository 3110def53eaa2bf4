import QtQuick
import Mirel.Screens

// Makes a sheet when it is first opened.
Loader {
    id: loader

    readonly property Sheet sheet: item as Sheet
    readonly property bool isOpen: sheet !== null && sheet.visible

    function open() {
        active = true;
        sheet.open();
    }

    active: false
}
