// What may be done with the text that the user has selected: a mark, or the buttons.
import QtQuick
import Quillo.Views

Item {
    id: root

    required property ToolbarModel model
    property bool translucent: true
    property alias surface: ground.surface
    // Room for the shadow, around what the panel is said to cover.
    readonly property int margin: translucent ? 16 : 0
    readonly property color accent: Theme.dark ? Theme.accent : "#2563EB"
    readonly property int motion: 120
    readonly property var offered: model.controls
    readonly property int markSize: 24

    implicitWidth: model.collapsed ? markSize : Math.ceil(column.implicitWidth) + 2 * 4
    implicitHeight: model.collapsed ? markSize : Math.ceil(column.implicitHeight) + 2 * 4

    Accessible.role: Accessible.ToolBar
    Accessible.name: "Quillo"

    // It comes in each time that it is shown.
    readonly property string presentation: model.presentation
    onPresentationChanged: entrance.restart()
    NumberAnimation {
        id: entrance
        target: body
        property: "opacity"
        from: 0.4
        to: 1
        duration: root.motion
        easing.type: Easing.OutQuad
    }

    HoverHandler {
        onHoveredChanged: root.model.hover(hovered)
    }

    PanelGround {
        id: ground
        anchors { fill: parent; margins: root.margin }
        radius: root.model.collapsed ? height / 2 : 13
        translucent: root.translucent
        margin: root.margin
    }

    Item {
        id: body
        anchors { fill: parent; margins: root.margin }

        Mark {
            visible: root.model.collapsed
            anchors.fill: parent
            anchors.margins: 2
            color: root.accent
            Accessible.role: Accessible.Button
            Accessible.name: root.offered.open?.title ?? ""
            Accessible.onPressAction: root.model.press("open")
        }

        Column {
            id: column
            visible: !root.model.collapsed
            anchors.centerIn: parent
            spacing: 2

            Row {
                spacing: 1

                BubbleButton {
                    symbol: "checkmark.circle"
                    name: root.offered.fix?.title ?? ""
                    help: root.offered.fix?.help ?? ""
                    enabled: root.offered.fix?.isEnabled ?? false
                    busy: root.model.active === "fix"
                    accent: root.accent
                    onClicked: root.model.press("fix")
                }
                BubbleButton {
                    symbol: "wand.and.stars"
                    name: root.offered.improve?.title ?? ""
                    help: root.offered.improve?.help ?? ""
                    enabled: root.offered.improve?.isEnabled ?? false
                    busy: root.model.active === "improve"
                    accent: root.accent
                    onClicked: root.model.press("improve")
                }
                BubbleButton {
                    symbol: "list.bullet"
                    opensList: true
                    name: root.offered.custom?.title ?? ""
                    help: root.offered.custom?.help ?? ""
                    enabled: root.offered.custom?.isEnabled ?? false
                    busy: root.model.active === "custom"
                    accent: root.accent
                    onClicked: root.model.press("custom")
                }
                Rectangle {
                    anchors.verticalCenter: parent.verticalCenter
                    width: 1
                    height: 16
                    color: Theme.primary
                    opacity: 0.14
                }
                BubbleButton {
                    symbol: "power"
                    label: ""
                    hoverTime: 100
                    name: root.offered.mute?.title ?? ""
                    help: root.offered.mute?.help ?? ""
                    enabled: root.offered.mute?.isEnabled ?? false
                    accent: Theme.red
                    onClicked: root.model.press("mute")
                }
            }
            Text {
                visible: text !== ""
                leftPadding: 8
                rightPadding: 8
                bottomPadding: 4
                text: root.model.error
                textFormat: Text.PlainText
                color: Theme.red
                font { family: Theme.fontFamily; pixelSize: 11 }
                Accessible.role: Accessible.AlertMessage
                Accessible.name: text
            }
            Rectangle {
                visible: root.model.customOpen
                width: column.width
                height: 1
                color: Theme.primary
                opacity: 0.1
            }
            Text {
                visible: root.model.customOpen && root.model.prompts.length === 0
                padding: 6
                leftPadding: 8
                text: root.model.emptyList
                color: Theme.secondary
                font { family: Theme.fontFamily; pixelSize: 12 }
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            Repeater {
                model: root.model.customOpen ? root.model.prompts : []

                Item {
                    id: flyoutRow
                    required property var modelData
                    width: column.width
                    height: 26
                    // The name may be of any length; the bubble is not.
                    implicitWidth: Math.min(flyoutName.implicitWidth + 2 * 8, 320)

                    Accessible.role: Accessible.MenuItem
                    Accessible.name: modelData.title
                    Accessible.onPressAction: root.model.press(modelData.id)

                    Rectangle {
                        anchors.fill: parent
                        radius: 7
                        color: root.accent
                        opacity: flyoutArea.pressed ? 0.22 : flyoutArea.containsMouse ? 0.12 : 0
                        Behavior on opacity { NumberAnimation { duration: root.motion; easing.type: Easing.OutQuad } }
                    }
                    Text {
                        id: flyoutName
                        anchors { left: parent.left; right: parent.right; margins: 8; verticalCenter: parent.verticalCenter }
                        text: flyoutRow.modelData.title
                        textFormat: Text.PlainText
                        elide: Text.ElideRight
                        color: Theme.primary
                        font { family: Theme.fontFamily; pixelSize: 12 }
                        Accessible.ignored: true
                    }
                    MouseArea {
                        id: flyoutArea
                        anchors.fill: parent
                        hoverEnabled: true
                        onClicked: root.model.press(flyoutRow.modelData.id)
                    }
                }
            }
        }
    }
}
