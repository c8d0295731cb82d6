// One line that goes away by itself.
import QtQuick
import Quillo.Views

Item {
    id: root

    required property ToastModel model
    property bool translucent: true
    property alias surface: ground.surface
    // Room for the shadow, around what the panel is said to cover.
    readonly property int margin: translucent ? 24 : 0

    // A name of the user's may be of any length; the screen is not.
    readonly property real textWidth: Math.min(Math.ceil(label.implicitWidth), Screen.width - 160)

    implicitWidth: textWidth + 16 + 7 + 2 * 16 + 8
    implicitHeight: Math.ceil(label.implicitHeight) + 2 * 10 + 8

    Accessible.role: Accessible.AlertMessage
    Accessible.name: model.text

    PanelGround {
        id: ground
        anchors { fill: parent; margins: root.margin + 4 }
        radius: height / 2
        translucent: root.translucent
        margin: root.margin
    }
    Item {
        anchors.centerIn: ground
        width: globe.width + 7 + root.textWidth
        height: ground.height

        Symbol {
            id: globe
            anchors.verticalCenter: parent.verticalCenter
            width: 16
            height: 16
            name: "globe"
            color: Theme.accent
        }
        Text {
            id: label
            anchors { left: globe.right; leftMargin: 7; verticalCenter: parent.verticalCenter }
            width: root.textWidth
            text: root.model.text
            textFormat: Text.PlainText
            elide: Text.ElideRight
            color: Theme.primary
            font { family: Theme.fontFamily; pixelSize: 13; weight: Font.Medium }
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
}
