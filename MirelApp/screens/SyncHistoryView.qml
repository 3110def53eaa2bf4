import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Mirel.Screens

// The last syncs, and what happened in the one that is selected.
Sheet {
    id: view

    required property MirelAppModel appModel
    // 0: none.
    property double selectedRun: 0
    readonly property var history: appModel.syncRuns
    readonly property var log: appModel.syncLogEntries
    readonly property var run: history.find(each => each.id === selectedRun) ?? null
    readonly property bool isNarrow: width < Measures.roomySheet

    objectName: "syncHistory"
    title: "Sync history & diagnostics"
    subtitle: "Tokens and credentials are never recorded."
    preferredWidth: Measures.widestSheet
    height: Math.min(roomiestHeight, Measures.widestSheet * 0.7)
    onOpened: {
        appModel.requestSyncHistory();
        runs.forceActiveFocus(Qt.OtherFocusReason);
    }

    StatePanel {
        objectName: "noRuns"
        Layout.fillWidth: true
        Layout.fillHeight: true
        visible: view.history.length === 0
        symbol: "history"
        title: "No sync history"
        explanation: "Every sync leaves a line here."
    }

    Item {
        id: columns

        Layout.fillWidth: true
        Layout.fillHeight: true
        visible: view.history.length > 0

        ListView {
            id: runs

            objectName: "runList"
            width: view.isNarrow ? columns.width : Measures.runColumn
            height: view.isNarrow ? Math.round(columns.height * 0.36) : columns.height
            clip: true
            activeFocusOnTab: true
            keyNavigationEnabled: true
            boundsBehavior: Flickable.StopAtBounds
            currentIndex: view.history.findIndex(each => each.id === view.selectedRun)
            model: view.history
            Accessible.role: Accessible.List
            Accessible.name: "Syncs, newest first"

            function choose(index: int) {
                if (index < 0 || index >= count)
                    return;
                view.selectedRun = view.history[index].id;
                positionViewAtIndex(index, ListView.Contain);
            }

            Keys.onPressed: event => {
                const steps = new Map([[Qt.Key_Down, currentIndex + 1], [Qt.Key_Up, currentIndex - 1], [Qt.Key_Home, 0],
                    [Qt.Key_End, count - 1]]);
                if (!steps.has(event.key))
                    return;
                runs.choose(steps.get(event.key));
                event.accepted = true;
            }

            delegate: SyncRunRow {
                width: runs.width // qmllint disable unqualified
                isShown: view.selectedRun === run.id // qmllint disable unqualified
                showsFocus: isShown && runs.activeFocus // qmllint disable unqualified
                onChosen: {
                    runs.forceActiveFocus(Qt.MouseFocusReason); // qmllint disable unqualified
                    view.selectedRun = run.id; // qmllint disable unqualified
                }
            }

            ScrollBar.vertical: PageScrollBar {
                name: "Position in the history"
            }

            FocusRing {
                anchors.margins: Measures.tiny / 2
                visible: runs.activeFocus && runs.currentIndex < 0
            }
        }

        Rectangle {
            id: line

            x: view.isNarrow ? 0 : runs.width
            y: view.isNarrow ? runs.height : 0
            width: view.isNarrow ? columns.width : Measures.hairline
            height: view.isNarrow ? Measures.hairline : columns.height
            color: Theme.border
        }

        Item {
            x: view.isNarrow ? 0 : line.x + line.width
            y: view.isNarrow ? line.y + line.height : 0
            width: columns.width - x
            height: columns.height - y

            StatePanel {
                objectName: "noRunSelected"
                anchors.fill: parent
                visible: view.run === null
                symbol: "history"
                title: "Select a sync"
                explanation: "Its pages and what went wrong are told here."
            }

            SyncRunDetail {
                anchors.fill: parent
                visible: view.run !== null
                run: view.run
                entries: view.run === null ? [] : view.log.filter(entry => entry.runID === view.selectedRun).reverse()
            }
        }
    }
}
