import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// Whether a service is connected.
RowLayout {
    id: status

    required property string name
    required property bool isConfigured

    objectName: "providerStatus"
    spacing: Measures.small
    Accessible.role: Accessible.StaticText
    Accessible.name: words.text

    Icon {
        symbol: status.isConfigured ? "circle-check" : "unplug"
        color: status.isConfigured ? Theme.success : Theme.secondary
    }

    PlainLabel {
        id: words

        objectName: "providerStatusText"
        Layout.fillWidth: true
        text: status.name + (status.isConfigured ? " configured" : " not configured")
        font.weight: Measures.emphasis
    }
}
