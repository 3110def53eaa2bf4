import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// The destinations of the program and the mailboxes of the library. Folds to a rail of icons.
Rectangle {
    id: sidebar

    required property MirelAppModel appModel
    required property bool isFolded
    readonly property var destinations: [
        {
            "name": "today",
            "text": "Today",
            "symbol": "sun",
            "section": "Review"
        },
        {
            "name": "library",
            "text": "Library",
            "symbol": "library",
            "section": "Retrieve"
        },
        {
            "name": "search",
            "text": "Search",
            "symbol": "search",
            "section": ""
        }
    ]
    readonly property var mailboxes: [
        {
            "name": "all",
            "text": "All bookmarks",
            "symbol": "bookmark"
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
    readonly property string currentMailbox: mailboxes.find(mailbox => mailbox.name === appModel.listedFilter)?.text ?? ""
    readonly property string currentTitle: appModel.selection === "library" ? currentMailbox : titleOf(appModel.selection)

    // Also called for the place that lies behind.
    function titleOf(destination: string): string {
        return destinations.find(each => each.name === destination)?.text ?? "";
    }

    // There is no height to spare for headings.
    readonly property bool isShort: height < Measures.roomySidebar

    signal searchRequested
    signal historyRequested
    signal settingsRequested

    objectName: "sidebar"
    implicitWidth: isFolded ? Measures.foldedSidebarWidth : Measures.sidebarWidth
    color: Theme.background
    Accessible.role: Accessible.PageTabList
    Accessible.name: "Places"

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

        Repeater {
            model: sidebar.destinations

            ColumnLayout {
                id: place

                required property var modelData

                Layout.fillWidth: true
                spacing: Measures.tiny / 2

                SidebarHeading {
                    visible: text !== "" && !sidebar.isFolded && !sidebar.isShort // qmllint disable unqualified
                    text: place.modelData.section
                }

                SidebarButton {
                    Layout.fillWidth: true
                    objectName: "destination-" + place.modelData.name
                    enabled: sidebar.appModel.hasLibrary // qmllint disable unqualified
                    text: place.modelData.text
                    symbol: place.modelData.symbol
                    isFolded: sidebar.isFolded // qmllint disable unqualified
                    // Within the library it is a mailbox that is shown.
                    isShown: sidebar.appModel.selection === place.modelData.name && place.modelData.name !== "library" // qmllint disable unqualified
                    holdsShown: sidebar.appModel.selection === place.modelData.name // qmllint disable unqualified
                    onClicked: {
                        sidebar.appModel.requestDestination(place.modelData.name); // qmllint disable unqualified
                        if (place.modelData.name === "search")
                            sidebar.searchRequested(); // qmllint disable unqualified
                    }
                }
            }
        }

        SidebarHeading {
            visible: !sidebar.isFolded && !sidebar.isShort
            text: "Mailboxes"
        }

        Hairline {
            Layout.topMargin: Measures.small
            Layout.bottomMargin: Measures.small
            visible: sidebar.isFolded || sidebar.isShort
        }

        Repeater {
            model: sidebar.mailboxes

            SidebarButton {
                required property var modelData

                Layout.fillWidth: true
                objectName: "mailbox-" + modelData.name
                enabled: sidebar.appModel.hasLibrary // qmllint disable unqualified
                text: modelData.text
                symbol: modelData.symbol
                isCounted: true
                count: sidebar.appModel.counts[modelData.name] // qmllint disable unqualified
                isFolded: sidebar.isFolded // qmllint disable unqualified
                isShown: sidebar.appModel.selection === "library" && sidebar.appModel.libraryFilter === modelData.name // qmllint disable unqualified
                onClicked: sidebar.appModel.requestMailbox(modelData.name) // qmllint disable unqualified
            }
        }

        Item {
            Layout.fillHeight: true
        }

        SyncStateButton {
            Layout.fillWidth: true
            visible: sidebar.appModel.hasLibrary
            appModel: sidebar.appModel
            isFolded: sidebar.isFolded
            onClicked: sidebar.historyRequested()
        }

        SidebarButton {
            Layout.fillWidth: true
            Layout.bottomMargin: Measures.small
            objectName: "openSettings"
            text: "Settings"
            symbol: "settings"
            isFolded: sidebar.isFolded
            isShown: false
            Accessible.role: Accessible.Button
            onClicked: sidebar.settingsRequested()
        }
    }
}
