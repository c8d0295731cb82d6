// Where the keyboard is, around the control in which this lies.
import QtQuick
import Quillo.Views

Rectangle {
    property real around: 8
    anchors { fill: parent; margins: -3 }
    visible: parent.activeFocus
    radius: around + 3
    color: "transparent"
    border { width: 2; color: Theme.accent }
}
