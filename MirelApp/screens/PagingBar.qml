import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// Turns the pages of the list.
Rectangle {
    id: bar

    required property MirelAppModel appModel

    objectName: "pagingBar"
    visible: appModel.pageCount > 1 // qmllint disable
    implicitHeight: Measures.controlHeight + Measures.medium
    color: Theme.background

    RowLayout {
        anchors.centerIn: parent
        spacing: Measures.medium

        PushButton {
            objectName: "previousPage"
            isQuiet: true
            symbol: "chevron-left"
            text: "Previous"
            enabled: bar.appModel.page > 0 // qmllint disable
            tip: "Previous page (Ctrl+Page Up)"
            onClicked: bar.appModel.requestPreviousPage()
        }

        PlainLabel {
            objectName: "pageNumber"
            Layout.minimumWidth: 72 * Measures.scale
            horizontalAlignment: Text.AlignHCenter
            text: "Page " + Display.number(bar.appModel.page + 1) // qmllint disable
            font.weight: Measures.emphasis
            Accessible.name: text + " of " + Display.number(bar.appModel.pageCount) // qmllint disable
        }

        PushButton {
            objectName: "nextPage"
            isQuiet: true
            symbol: "chevron-right"
            symbolFollowsText: true
            text: "Next"
            enabled: bar.appModel.page + 1 < bar.appModel.pageCount // qmllint disable
            tip: "Next page (Ctrl+Page Down)"
            onClicked: bar.appModel.requestNextPage()
        }
    }
}
