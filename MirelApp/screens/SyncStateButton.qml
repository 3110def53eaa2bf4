import QtQuick
import QtQuick.Templates as T
import Mirel.Screens

// What became of the last sync; opens the history. Only its icon when `isFolded`.
T.Button {
    id: control

    required property MirelAppModel appModel
    required property bool isFolded
    readonly property var run: appModel.syncRuns.length > 0 ? appModel.syncRuns[0] : null
    readonly property string line: {
        if (appModel.isSyncing)
            return "Syncing " + Display.number(appModel.syncProgress.fetched) + " bookmarks";
        if (run === null)
            return "Not synced yet";
        switch (run.status) {
        case "rate_limited":
            return "X rate limited";
        case "failed":
            return "Last sync failed";
        case "completed":
            return "Last sync: " + Display.number(run.fetched) + " bookmarks across " + Display.number(run.pages) + " page(s)";
        }
        return "Last sync did not finish";
    }
    readonly property SyncStatus shown: SyncStatus {
        status: control.appModel.isSyncing || control.run === null ? "" : control.run.status
    }

    objectName: "syncState"
    text: line
    implicitHeight: Math.max(Measures.controlHeight, words.implicitHeight + 2 * Measures.small)
    leftPadding: isFolded ? 0 : Measures.small
    rightPadding: isFolded ? 0 : Measures.small
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Accessible.name: "History: " + line
    Accessible.description: "Opens the sync history"

    // qmllint disable deferred-property-id
    contentItem: Item {
        Icon {
            id: icon

            x: control.isFolded ? (parent.width - width) / 2 : 0
            y: control.isFolded ? (parent.height - height) / 2 : Math.max(0, (Measures.controlLine - height) / 2) + words.y
            symbol: control.shown.isTrouble ? "triangle-alert" : "history"
            color: control.shown.isTrouble ? control.shown.color : Theme.secondary
        }

        PlainLabel {
            id: words

            objectName: "syncLine"
            anchors.left: icon.right
            anchors.leftMargin: Measures.small
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: !control.isFolded
            text: control.line
            color: Theme.secondary
            font.pixelSize: Measures.metaText
            elide: Text.ElideNone
            wrapMode: Text.Wrap
        }
    }
    background: Rectangle {
        radius: Measures.controlRadius
        color: control.down ? Theme.current : control.hovered ? Theme.hovered : "transparent"

        FocusRing {
            visible: control.visualFocus
        }
    }

    HoverTip {
        visible: control.hovered || control.visualFocus
        text: control.isFolded ? "History. " + control.line : "History"
    }
}
