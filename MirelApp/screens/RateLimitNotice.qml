import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// Says until when X answers no sync. Gives way to an error, which tells the same at first.
Rectangle {
    id: notice

    required property MirelAppModel appModel
    readonly property var run: appModel.syncRuns.length > 0 ? appModel.syncRuns[0] : null
    readonly property var resetAt: run !== null && run.status === "rate_limited" ? run.rateLimitResetAt : undefined

    objectName: "rateLimitNotice"
    visible: resetAt !== undefined && resetAt > Display.now && !appModel.isSyncing && appModel.lastError === ""
    implicitHeight: Measures.controlHeight + Measures.small
    color: Theme.background
    Accessible.role: Accessible.StatusBar
    Accessible.name: words.text

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Measures.large
        anchors.rightMargin: Measures.large
        spacing: Measures.small

        Icon {
            symbol: "clock"
            color: Theme.warning
        }

        PlainLabel {
            id: words

            objectName: "rateLimitText"
            Layout.fillWidth: true
            text: notice.resetAt === undefined ? "" : "X rate limit resets " + Display.clockTime(notice.resetAt, Display.now)
        }
    }
}
