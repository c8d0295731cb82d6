// A level from 0 to 1.
import QtQuick
import Quillo.Views

Item {
    id: bar

    required property string name
    required property real level
    // For assistive technologies, in parts of a hundred.
    readonly property real value: Math.round(level * 100)
    readonly property real minimumValue: 0
    readonly property real maximumValue: 100

    implicitWidth: 180
    implicitHeight: 8

    Accessible.role: Accessible.ProgressBar
    Accessible.name: name
    Accessible.description: value + " %"

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: Qt.alpha(Theme.primary, 0.12)
    }
    Rectangle {
        width: Math.max(height, parent.width * Math.max(0, Math.min(1, bar.level)))
        height: parent.height
        radius: height / 2
        color: Theme.green
    }
}
