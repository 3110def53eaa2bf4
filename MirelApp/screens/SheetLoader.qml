import QtQuick
import Mirel.Screens

// Makes a sheet when it is first opened.
Loader {
    id: loader

    required property MirelAppModel appModel
    readonly property Sheet sheet: item as Sheet
    readonly property bool isOpen: sheet !== null && sheet.visible

    function open() {
        active = true;
        sheet.open();
    }

    active: false

    // Nothing may stand over the post that a link opens, nor over why it opens none.
    Connections {
        target: loader.appModel

        function onLinkFollowed() {
            if (loader.isOpen)
                loader.sheet.close();
        }
    }
}
