// What a control does, in a small window beside it after the pointer has rested on it. The panels
// that use it never have the focus, nor has it.
import QtQuick
import Quillo.Views

Loader {
    id: loader

    required property Item owner
    required property string tip
    property bool hovered: false

    active: false
    Timer {
        interval: 700
        running: loader.hovered && loader.tip !== ""
        onTriggered: loader.active = true
    }
    onHoveredChanged: if (!hovered) active = false

    sourceComponent: Window {
        readonly property point corner: loader.owner.mapToGlobal(0, loader.owner.height + 12)
        flags: Qt.ToolTip | Qt.FramelessWindowHint | Qt.WindowDoesNotAcceptFocus | Qt.WindowTransparentForInput
        color: Theme.opaqueMaterial
        width: Math.ceil(words.implicitWidth) + 16
        height: Math.ceil(words.implicitHeight) + 8
        x: Math.max(Screen.virtualX + 4, Math.min(corner.x, Screen.virtualX + Screen.width - width - 4))
        y: corner.y + height > Screen.virtualY + Screen.height - 4
           ? loader.owner.mapToGlobal(0, 0).y - height - 12 : corner.y
        visible: true

        Rectangle {
            anchors.fill: parent
            color: "transparent"
            border { width: 1; color: Qt.alpha(Theme.primary, 0.16) }
        }
        Text {
            id: words
            anchors.centerIn: parent
            text: loader.tip
            textFormat: Text.PlainText
            color: Theme.primary
            font { family: Theme.fontFamily; pixelSize: 11 }
        }
    }
}
