// A button that shows what is chosen, and a menu below it with what else may be.
import QtQuick
import Quillo.Views

Item {
    id: root

    required property FormRowModel row
    signal chosen(string value)

    readonly property int current: row.options.findIndex(option => option.value === row.value)
    readonly property string label: current < 0 ? "" : row.options[current].label

    implicitWidth: Math.max(120, title.implicitWidth + 10 + 30)
    implicitHeight: 30
    activeFocusOnTab: true

    function step(distance) {
        const index = Math.max(0, Math.min(row.options.length - 1, current + distance))
        if (index !== current) chosen(row.options[index].value)
    }

    Accessible.role: Accessible.ComboBox
    Accessible.name: row.label
    Accessible.description: row.error || row.help
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onPressAction: menu.open()
    Keys.onSpacePressed: menu.open()
    Keys.onDownPressed: step(1)
    Keys.onUpPressed: step(-1)

    FocusRing { around: 7 }
    Rectangle {
        anchors.fill: parent
        radius: 7
        color: Theme.primary
        opacity: area.pressed || menu.visible ? 0.16 : area.containsMouse ? 0.11 : 0.07
    }
    Text {
        id: title
        anchors { left: parent.left; right: arrows.left; leftMargin: 10; rightMargin: 6; verticalCenter: parent.verticalCenter }
        text: root.label
        textFormat: Text.PlainText
        elide: Text.ElideRight
        color: Theme.primary
        font { family: Theme.fontFamily; pixelSize: 13 }
        // What the choice holds, as its child.
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Symbol {
        id: arrows
        anchors { right: parent.right; rightMargin: 8; verticalCenter: parent.verticalCenter }
        width: 12
        height: 12
        name: "chevron.up.chevron.down"
        color: Theme.secondary
    }
    MouseArea {
        id: area
        anchors.fill: parent
        hoverEnabled: true
        onClicked: {
            root.forceActiveFocus(Qt.MouseFocusReason)
            menu.open()
        }
    }
    OptionMenu {
        id: menu
        options: root.row.options
        current: root.current
        from: root
        onChosen: value => root.chosen(value)
    }
}
