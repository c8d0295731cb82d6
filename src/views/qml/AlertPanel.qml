// A question that is answered by one of its buttons.
import QtQuick
import Quillo.Views

FocusScope {
    id: root

    required property AlertModel model
    property bool translucent: true
    property alias surface: ground.surface
    // Room for the shadow, around what the panel is said to cover.
    readonly property int margin: translucent ? 24 : 0

    readonly property bool hasAccessory: model.accessoryText !== ""
    implicitWidth: hasAccessory ? 460 + icon.width + 16 + 2 * 20 : 400
    implicitHeight: column.implicitHeight + 2 * 20

    Accessible.role: Accessible.Dialog
    Accessible.name: model.messageText
    Accessible.description: model.informativeText

    PanelGround {
        id: ground
        anchors { fill: parent; margins: root.margin }
        radius: 14
        translucent: root.translucent
        margin: root.margin
    }
    DragHandler {
        target: null
        onActiveChanged: if (active) root.Window.window.startSystemMove()
    }

    Rectangle {
        id: icon
        x: root.margin + 20
        y: root.margin + 20
        width: 44
        height: 44
        radius: 11
        gradient: Gradient {
            GradientStop { position: 0; color: "#5b8cff" }
            GradientStop { position: 1; color: "#2f5be0" }
        }
        Symbol {
            anchors.centerIn: parent
            width: 26
            height: 26
            name: "mic.fill"
            color: "white"
        }
    }

    Column {
        id: column
        x: icon.x + icon.width + 16
        y: root.margin + 20
        width: root.implicitWidth - 2 * 20 - icon.width - 16
        spacing: 6

        Text {
            width: parent.width
            text: root.model.messageText
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            color: Theme.primary
            font { family: Theme.fontFamily; pixelSize: 14; weight: Font.DemiBold }
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Text {
            width: parent.width
            text: root.model.informativeText
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            lineHeight: 1.15
            color: Theme.secondary
            font { family: Theme.fontFamily; pixelSize: 12 }
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Item { width: 1; height: 8 }
        // It can be selected and copied, and scrolls when it is long.
        Flickable {
            visible: root.hasAccessory
            width: parent.width
            height: Math.max(40, Math.min(accessory.implicitHeight, 320))
            contentHeight: accessory.implicitHeight
            clip: true
            boundsBehavior: Flickable.StopAtBounds

            TextEdit {
                id: accessory
                width: parent.width
                text: root.model.accessoryText
                textFormat: TextEdit.PlainText
                wrapMode: TextEdit.Wrap
                readOnly: true
                selectByMouse: true
                color: Theme.primary
                selectionColor: Theme.accent
                font { family: Theme.fontFamily; pixelSize: 13 }
                Accessible.role: Accessible.EditableText
                Accessible.readOnly: true
                Accessible.name: text
            }
        }
        Item { visible: root.hasAccessory; width: 1; height: 8 }

        // The first one, which is the default, lies in the corner; the others follow to its left.
        Row {
            anchors.right: parent.right
            layoutDirection: Qt.RightToLeft
            spacing: 8

            Repeater {
                model: root.model.controlList
                PushButton {
                    required property var modelData
                    title: modelData.title
                    prominent: modelData.isDefault
                    onClicked: root.model.press(modelData.id)
                }
            }
        }
    }
}
