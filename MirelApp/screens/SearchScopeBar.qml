import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// Says that a search covers one mailbox only, and offers all of them.
Rectangle {
    id: bar

    required property string mailbox

    signal widened

    objectName: "searchScope"
    implicitHeight: Measures.controlHeight + Measures.small
    color: Theme.background

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Measures.huge
        anchors.rightMargin: Measures.small
        spacing: Measures.small

        PlainLabel {
            objectName: "searchScopeText"
            Layout.fillWidth: true
            text: "Searching in " + bar.mailbox
            color: Theme.secondary
        }

        PushButton {
            objectName: "searchAll"
            isQuiet: true
            text: "Search All Bookmarks"
            onClicked: bar.widened()
        }
    }
}
