import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// What went wrong and what was done; the error goes first.
Rectangle {
    id: bar

    required property MirelAppModel appModel
    // The error that already stands in place of the rows; empty when none does.
    required property string errorShownElsewhere

    visible: error.message !== "" || status.message !== ""
    implicitHeight: lines.implicitHeight + Measures.small
    color: Theme.background

    ColumnLayout {
        id: lines

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        anchors.leftMargin: Measures.large
        anchors.rightMargin: Measures.small
        spacing: 0

        StatusLine {
            id: error

            objectName: "errorLine"
            Layout.fillWidth: true
            symbol: "triangle-alert"
            symbolColor: Theme.failure
            kind: "Error"
            message: bar.appModel.lastError === bar.errorShownElsewhere ? "" : bar.appModel.lastError
            action: bar.appModel.lastError === bar.appModel.listingError ? "Try Again" : ""
            onActionRequested: bar.appModel.requestRefresh()
            onDismissed: bar.appModel.dismissError()
        }

        StatusLine {
            id: status

            objectName: "statusLine"
            Layout.fillWidth: true
            symbol: "check"
            symbolColor: Theme.success
            kind: "Done"
            message: bar.appModel.statusMessage
            onDismissed: bar.appModel.dismissStatus()
        }
    }
}
