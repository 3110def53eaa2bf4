import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Mirel.Screens

// A line to type into, below its name.
ColumnLayout {
    id: field

    required property string name
    property string prompt: ""
    property bool isSecret: false
    property alias text: input.text

    signal accepted

    // Brings the keyboard here, with what stands in the line selected.
    function take() {
        input.forceActiveFocus(Qt.OtherFocusReason);
        input.selectAll();
    }

    spacing: Measures.tiny
    // Of a password Qt tells a screen reader nothing, its name included, so that the group has the name too.
    Accessible.role: Accessible.Grouping
    Accessible.name: name === "" ? prompt : name

    PlainLabel {
        Layout.fillWidth: true
        visible: text !== ""
        text: field.name
        color: Theme.secondary
        Accessible.ignored: true
    }

    T.TextField {
        id: input

        objectName: field.objectName + "Input"
        Layout.fillWidth: true
        implicitHeight: Measures.controlHeight
        leftPadding: Measures.small
        rightPadding: Measures.small
        verticalAlignment: TextInput.AlignVCenter
        selectByMouse: true
        activeFocusOnTab: true
        color: Theme.text
        selectionColor: Theme.tint
        selectedTextColor: Theme.onTint
        font.pixelSize: Measures.controlText
        opacity: enabled ? 1 : 0.5
        echoMode: field.isSecret ? TextInput.Password : TextInput.Normal
        inputMethodHints: field.isSecret ? Qt.ImhHiddenText | Qt.ImhSensitiveData : Qt.ImhNoPredictiveText
        clip: true
        Accessible.role: Accessible.EditableText
        Accessible.passwordEdit: field.isSecret
        Accessible.name: field.Accessible.name
        onAccepted: field.accepted()

        background: Rectangle {
            radius: Measures.controlRadius
            color: Theme.background
            border.width: input.activeFocus ? Measures.focusRing : Measures.hairline
            border.color: input.activeFocus ? Theme.tint : Theme.border
        }

        PlainLabel {
            anchors.fill: parent
            anchors.leftMargin: input.leftPadding
            anchors.rightMargin: input.rightPadding
            visible: input.text === "" && input.preeditText === ""
            text: field.prompt
            color: Theme.secondary
            Accessible.ignored: true
        }
    }
}
