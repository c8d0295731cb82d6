// A small round button with a symbol; its name shows beside it while the pointer is on it.
import QtQuick
import Quillo.Views

Item {
    id: button

    required property string symbol
    required property string name
    readonly property bool hovered: area.containsMouse
    signal clicked

    implicitWidth: 17
    implicitHeight: 17
    activeFocusOnTab: true

    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.focusable: true
    Accessible.onPressAction: button.clicked()
    Keys.onSpacePressed: button.clicked()

    Rectangle {
        anchors.fill: parent
        radius: width / 2
        color: Theme.primary
        opacity: area.pressed ? 0.24 : button.hovered ? 0.16 : 0.08
        Behavior on opacity { NumberAnimation { duration: 100 } }
    }
    Symbol {
        anchors.centerIn: parent
        width: 9
        height: 9
        name: button.symbol
        color: Theme.primary
    }
    MouseArea {
        id: area
        // Larger than what is seen, for an easier aim.
        anchors { fill: parent; margins: -4 }
        hoverEnabled: true
        onClicked: button.clicked()
    }
}
