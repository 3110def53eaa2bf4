import QtQuick
import QtQuick.Layouts
import Mirel.Screens

// The name of a part of a form.
PlainLabel {
    Layout.fillWidth: true
    font.pixelSize: Measures.postText
    font.weight: Measures.strong
    Accessible.role: Accessible.Heading
    Accessible.name: text
}
