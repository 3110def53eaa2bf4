import QtQuick
import QtQuick.Templates as T
import Mirel.Screens

// The search, which runs as one types.
T.TextField {
    id: field

    // What is being searched for.
    required property string query
    // The search takes longer than one would not notice.
    property bool isBusy: false

    signal edited(string query)
    // The user is about to search.
    signal begun
    // The keyboard wants to go on to the results.
    signal finished

    function clearQuery() {
        text = "";
        edited("");
    }

    objectName: "searchField"
    implicitHeight: Measures.controlHeight
    leftPadding: Measures.smallIcon + 2 * Measures.small
    rightPadding: clearButton.visible ? clearButton.width + Measures.tiny : Measures.small
    verticalAlignment: TextInput.AlignVCenter
    selectByMouse: true
    color: Theme.text
    selectionColor: Theme.tint
    selectedTextColor: Theme.onTint
    placeholderText: "Search words, a phrase, or syntax such as author:alice"
    font.pixelSize: Measures.controlText
    opacity: enabled ? 1 : 0.5
    Accessible.role: Accessible.EditableText
    Accessible.searchEdit: true
    Accessible.name: "Search"
    Accessible.description: placeholderText

    onQueryChanged: {
        if (text !== query)
            text = query;
    }
    onIsBusyChanged: {
        if (!isBusy)
            waiting.visible = false;
    }
    onTextEdited: edited(text)
    onActiveFocusChanged: {
        if (activeFocus)
            begun();
    }
    Component.onCompleted: text = query

    Keys.onPressed: event => {
        switch (event.key) {
        case Qt.Key_Escape:
            if (field.text === "")
                field.finished();
            else
                field.clearQuery();
            break;
        case Qt.Key_Down:
        case Qt.Key_Return:
        case Qt.Key_Enter:
            field.finished();
            break;
        default:
            return;
        }
        event.accepted = true;
    }

    background: Rectangle {
        radius: Measures.controlRadius
        color: Theme.background
        border.width: field.activeFocus ? Measures.focusRing : Measures.hairline
        border.color: field.activeFocus ? Theme.tint : Theme.border
    }

    PlainLabel {
        anchors.fill: parent
        anchors.leftMargin: field.leftPadding
        anchors.rightMargin: Measures.small
        visible: field.text === "" && field.preeditText === ""
        text: field.placeholderText
        color: Theme.secondary
        Accessible.ignored: true
    }

    Icon {
        anchors.verticalCenter: parent.verticalCenter
        x: Measures.small
        visible: !waiting.visible
        symbol: "search"
    }

    Icon {
        id: waiting

        objectName: "searchIsBusy"
        anchors.verticalCenter: parent.verticalCenter
        x: Measures.small
        visible: false
        symbol: "loader-circle"
        color: Theme.tint

        RotationAnimation on rotation {
            running: waiting.visible && Theme.motion > 0
            loops: Animation.Infinite
            from: 0
            to: 360
            duration: 1000
        }

        Timer {
            interval: 150
            running: field.isBusy
            onTriggered: waiting.visible = true
        }
    }

    IconButton {
        id: clearButton

        objectName: "clearSearch"
        anchors.right: parent.right
        anchors.rightMargin: Measures.tiny / 2
        anchors.verticalCenter: parent.verticalCenter
        implicitWidth: implicitHeight
        implicitHeight: Measures.controlHeight - Measures.tiny
        visible: field.text !== ""
        symbol: "x"
        text: "Clear Search (Esc)"
        Accessible.name: "Clear search"
        onClicked: {
            field.clearQuery();
            field.forceActiveFocus(Qt.OtherFocusReason);
        }
    }
}
