// A button with a title, and perhaps a symbol before it.
import QtQuick
import Quillo.Views

Item {
    id: button

    required property string title
    property string symbol: ""
    property string help: ""
    property bool prominent: false
    property bool destructive: false
    property real textSize: 13
    property real padding: 14
    readonly property color titleColor: prominent ? Theme.onAccent
                                     : destructive ? Theme.red : Theme.primary
    signal clicked

    implicitWidth: label.implicitWidth + (symbol === "" ? 0 : icon.width + 5) + 2 * padding
    implicitHeight: 30
    activeFocusOnTab: true

    Accessible.role: Accessible.Button
    Accessible.name: title
    Accessible.description: help
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onPressAction: button.clicked()
    Keys.onSpacePressed: button.clicked()

    FocusRing { around: ground.radius }
    Rectangle {
        id: ground
        anchors.fill: parent
        radius: Math.min(8, height / 3)
        color: button.prominent ? Theme.accent : Theme.primary
        opacity: button.prominent ? (area.pressed ? 0.87 : area.containsMouse ? 0.9 : 1)
                                  : (area.pressed ? 0.2 : area.containsMouse ? 0.14 : 0.08)
        Behavior on opacity { NumberAnimation { duration: 100 } }
    }
    Symbol {
        id: icon
        visible: button.symbol !== ""
        name: button.symbol
        color: button.titleColor
        width: button.textSize
        height: width
        anchors { left: parent.left; leftMargin: button.padding; verticalCenter: parent.verticalCenter }
    }
    Text {
        id: label
        text: button.title
        color: button.titleColor
        font { family: Theme.fontFamily; pixelSize: button.textSize; weight: Font.Medium }
        anchors { right: parent.right; rightMargin: button.padding; verticalCenter: parent.verticalCenter }
        Accessible.ignored: true
    }
    MouseArea {
        id: area
        anchors.fill: parent
        hoverEnabled: true
        onClicked: button.clicked()
    }
}
