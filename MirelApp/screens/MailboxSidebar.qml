import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// The mailboxes of the library. Folds to a rail of icons.
Rectangle {
    id: sidebar

    required property MirelAppModel appModel
    required property bool isFolded
    readonly property var mailboxes: [
        {
            "name": "all",
            "text": "All bookmarks",
            "symbol": "library"
        },
        {
            "name": "inbox",
            "text": "Inbox",
            "symbol": "inbox"
        },
        {
            "name": "favorites",
            "text": "Favorites",
            "symbol": "star"
        },
        {
            "name": "archive",
            "text": "Archive",
            "symbol": "archive"
        },
        {
            "name": "read",
            "text": "Read",
            "symbol": "book-open-check"
        }
    ]
    readonly property string currentTitle: mailboxes.find(mailbox => mailbox.name === appModel.libraryFilter)?.text ?? ""

    objectName: "mailboxSidebar"
    implicitWidth: isFolded ? Measures.foldedSidebarWidth : Measures.sidebarWidth
    color: Theme.background
    Accessible.role: Accessible.PageTabList
    Accessible.name: "Mailboxes"

    ColumnLayout {
        anchors.fill: parent
        anchors.leftMargin: Measures.medium
        anchors.rightMargin: Measures.medium
        spacing: Measures.tiny / 2

        RowLayout {
            Layout.preferredHeight: Measures.barHeight
            Layout.leftMargin: sidebar.isFolded ? 0 : Measures.small
            Layout.alignment: sidebar.isFolded ? Qt.AlignHCenter : Qt.AlignLeft
            spacing: Measures.small

            Icon {
                symbol: "bookmark"
                size: Measures.icon
                color: Theme.tint
            }

            PlainLabel {
                visible: !sidebar.isFolded
                text: "Mirel"
                font.pixelSize: Measures.readingText
                font.weight: Measures.strong
            }
        }

        PlainLabel {
            Layout.leftMargin: Measures.small
            Layout.topMargin: Measures.small
            Layout.bottomMargin: Measures.tiny
            visible: !sidebar.isFolded
            text: "MAILBOXES"
            color: Theme.tertiary
            font.pixelSize: Measures.metaText
            font.weight: Measures.strong
            font.letterSpacing: 0.5
        }

        Repeater {
            model: sidebar.mailboxes

            MailboxButton {
                required property var modelData

                Layout.fillWidth: true
                objectName: "mailbox-" + modelData.name
                enabled: sidebar.appModel.hasLibrary // qmllint disable unqualified
                text: modelData.text
                symbol: modelData.symbol
                count: sidebar.appModel.counts[modelData.name] // qmllint disable unqualified
                isFolded: sidebar.isFolded // qmllint disable unqualified
                isShown: sidebar.appModel.libraryFilter === modelData.name // qmllint disable unqualified
                onClicked: sidebar.appModel.requestMailbox(modelData.name) // qmllint disable unqualified
            }
        }

        Item {
            Layout.fillHeight: true
        }
    }
}
