// The program's mark: a disc with stars.
import QtQuick
import Quillo.Views

Item {
    id: mark

    property color color: "#2563EB"

    Rectangle {
        anchors.fill: parent
        radius: width / 2
        color: mark.color
        antialiasing: true
    }
    Symbol {
        anchors.centerIn: parent
        width: Math.round(mark.width * 0.66)
        height: width
        name: "sparkles"
        color: Theme.onAccent
    }
}
