// On or off.
import QtQuick
import Quillo.Views

Item {
    id: toggle

    required property string name
    property string help: ""
    required property bool on
    signal toggled

    implicitWidth: 40
    implicitHeight: 24
    activeFocusOnTab: true

    Accessible.role: Accessible.CheckBox
    Accessible.name: name
    Accessible.description: help
    Accessible.checkable: true
    Accessible.checked: on
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onToggleAction: toggle.toggled()
    Accessible.onPressAction: toggle.toggled()
    Keys.onSpacePressed: toggle.toggled()

    FocusRing { around: 12 }
    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: toggle.on ? Theme.accent : Qt.alpha(Theme.primary, Theme.dark ? 0.3 : 0.34)
        Behavior on color { ColorAnimation { duration: 120 } }
    }
    Rectangle {
        x: toggle.on ? parent.width - width - 2 : 2
        y: 2
        width: 20
        height: 20
        radius: 10
        color: "white"
        Behavior on x { NumberAnimation { duration: 120; easing.type: Easing.OutCubic } }
    }
    MouseArea {
        anchors.fill: parent
        onClicked: {
            toggle.forceActiveFocus(Qt.MouseFocusReason)
            toggle.toggled()
        }
    }
}
