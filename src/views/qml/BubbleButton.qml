// A button of the bubble: a symbol, perhaps words, on a pill while the pointer is on it.
import QtQuick
import Quillo.Views

Item {
    id: button

    required property string symbol
    required property string name
    property string label: name
    property string help: ""
    property bool opensList: false
    property bool busy: false
    property color accent: Theme.accent
    property int hoverTime: 120
    readonly property bool hovered: area.containsMouse && enabled
    readonly property color ink: busy || hovered ? accent : Theme.primary
    signal clicked

    implicitWidth: row.implicitWidth + 2 * 8
    implicitHeight: 26
    opacity: enabled || busy ? 1 : 0.45

    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.description: help
    Accessible.onPressAction: button.clicked()

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: button.accent
        opacity: area.pressed && button.enabled ? 0.22 : button.hovered || button.busy ? 0.12 : 0
        Behavior on opacity { NumberAnimation { duration: button.hoverTime; easing.type: Easing.OutQuad } }
    }
    Row {
        id: row
        anchors.centerIn: parent
        spacing: 5

        Symbol {
            id: icon
            anchors.verticalCenter: parent.verticalCenter
            width: 14
            height: 14
            name: button.busy ? "circle.dotted" : button.symbol
            color: button.ink
            NumberAnimation on rotation {
                running: button.busy
                from: 0
                to: 360
                duration: 1100
                loops: Animation.Infinite
                onRunningChanged: if (!running) icon.rotation = 0
            }
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            visible: text !== ""
            text: button.label
            textFormat: Text.PlainText
            color: button.ink
            font { family: Theme.fontFamily; pixelSize: 12; weight: Font.Medium }
            Accessible.ignored: true
        }
        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            visible: button.opensList
            width: 8
            height: 8
            name: "chevron.down"
            color: button.ink
        }
    }
    MouseArea {
        id: area
        anchors.fill: parent
        hoverEnabled: true
        onClicked: button.clicked()
    }
    HoverTip {
        owner: button
        tip: button.help
        hovered: area.containsMouse && !area.pressed
    }
}
