// The mark at the corner of a text field.
import QtQuick
import Quillo.Views

Item {
    id: root

    required property BadgeModel model
    property bool translucent: true
    property alias surface: ground
    // Room to grow under the pointer.
    readonly property int margin: translucent ? 2 : 0

    implicitWidth: 18
    implicitHeight: 18

    Accessible.role: Accessible.Button
    Accessible.name: model.controls.badge?.title ?? ""
    Accessible.description: model.controls.badge?.help ?? ""
    Accessible.onPressAction: model.press("badge")

    Surface {
        id: ground
        anchors { fill: parent; margins: root.margin }
        radius: height / 2
        color: "transparent"
    }
    // What the shape cuts off at its edge is of the mark's own colour.
    Rectangle {
        anchors.fill: parent
        visible: !root.translucent
        color: mark.color
    }
    Mark {
        id: mark
        anchors { fill: parent; margins: root.margin }
        color: Theme.dark ? Theme.accent : "#2563EB"
        scale: area.containsMouse ? 1.12 : 1
        Behavior on scale { NumberAnimation { duration: 120; easing.type: Easing.OutQuad } }
    }
    MouseArea {
        id: area
        anchors.fill: parent
        hoverEnabled: true
        onClicked: root.model.press("badge")
        onContainsMouseChanged: root.model.hover(containsMouse)
    }
    HoverTip {
        owner: root
        tip: root.model.controls.badge?.help ?? ""
        hovered: area.containsMouse && !area.pressed
    }
}
