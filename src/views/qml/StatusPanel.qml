// What a dictation is doing, over any application.
import QtQuick
import Quillo.Views

Item {
    id: root

    required property StatusModel model
    property bool translucent: true
    property alias surface: ground.surface
    // Room for the shadow, around what the panel is said to cover.
    readonly property int margin: translucent ? 24 : 0
    // A change is seen as a motion only by those who saw the state before.
    readonly property bool animated: Window.visibility !== Window.Hidden
    readonly property int motion: 180
    readonly property var offered: model.controls
    readonly property color stateColor: model.color === StatusModel.Red ? Theme.red
                                      : model.color === StatusModel.Orange ? Theme.orange : Theme.accent

    implicitWidth: 330
    implicitHeight: ground.height + 8

    Accessible.role: Accessible.AlertMessage
    Accessible.name: model.statusText
    Accessible.description: model.detail

    PanelGround {
        id: ground
        x: root.margin + 4
        y: Math.round((root.height - height) / 2)
        width: root.implicitWidth - 8
        height: Math.max(icon.height, column.height) + 20
        translucent: root.translucent
        margin: root.margin
        Behavior on height {
            enabled: root.animated
            NumberAnimation { duration: root.motion; easing.type: Easing.OutCubic }
        }
    }

    Item {
        id: icon
        x: ground.x + 13
        anchors.verticalCenter: ground.verticalCenter
        width: 34
        height: 34

        Rectangle {
            anchors.fill: parent
            radius: 17
            color: Qt.alpha(symbol.color, 0.16)
        }
        Symbol {
            id: symbol
            anchors.centerIn: parent
            width: 18
            height: 18
            name: root.model.symbol
            color: root.stateColor
            Behavior on color {
                enabled: root.animated
                ColorAnimation { duration: root.motion; easing.type: Easing.OutCubic }
            }
        }
    }

    Column {
        id: column
        anchors { left: icon.right; leftMargin: 11; verticalCenter: ground.verticalCenter }
        width: ground.width - 2 * 13 - icon.width - 11
        spacing: 8

        Item {
            id: header
            readonly property int spacing: 6
            width: parent.width
            height: 17

            Text {
                id: status
                anchors { left: parent.left; right: aside.left; rightMargin: header.spacing; verticalCenter: parent.verticalCenter }
                text: root.model.statusText
                textFormat: Text.PlainText
                elide: Text.ElideRight
                color: Theme.primary
                font { family: Theme.fontFamily; pixelSize: 13; weight: Font.DemiBold }
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            Row {
                id: aside
                anchors { right: parent.right; verticalCenter: parent.verticalCenter }
                spacing: header.spacing

                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    visible: text !== ""
                    text: cancel.visible && cancel.hovered ? cancel.name
                        : dismiss.visible && dismiss.hovered ? dismiss.name : ""
                    color: Theme.secondary
                    font { family: Theme.fontFamily; pixelSize: 10; weight: Font.Medium }
                    Accessible.ignored: true
                }
                IconButton {
                    id: dismiss
                    anchors.verticalCenter: parent.verticalCenter
                    visible: root.offered.dismiss !== undefined
                    symbol: "xmark"
                    name: root.offered.dismiss?.title ?? ""
                    onClicked: root.model.press("dismiss")
                }
                Text {
                    id: shortcut
                    anchors.verticalCenter: parent.verticalCenter
                    // The status needs its room more.
                    visible: text !== "" && status.implicitWidth + header.spacing + implicitWidth
                             + (dismiss.visible ? dismiss.width + aside.spacing : 0) <= header.width
                    text: root.model.shortcutText
                    textFormat: Text.PlainText
                    color: Theme.secondary
                    font { family: Theme.fontFamily; pixelSize: 10 }
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
                IconButton {
                    id: cancel
                    anchors.verticalCenter: parent.verticalCenter
                    visible: root.offered.cancel !== undefined
                    symbol: "xmark"
                    name: root.offered.cancel?.title ?? ""
                    onClicked: root.model.press("cancel")
                }
            }
        }
        Text {
            width: parent.width
            visible: text !== ""
            text: root.model.detail
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            // What the panel has room for.
            maximumLineCount: root.offered.retry ? 2 : 4
            elide: Text.ElideRight
            color: Theme.secondary
            font { family: Theme.fontFamily; pixelSize: 11 }
            Accessible.role: Accessible.StaticText
            Accessible.name: root.model.detail
            // What comes while the ground still grows comes with it.
            opacity: visible ? 1 : 0
            Behavior on opacity { enabled: root.animated; NumberAnimation { duration: root.motion; easing.type: Easing.OutCubic } }
        }
        PushButton {
            visible: root.offered.retry !== undefined
            height: 22
            textSize: 11
            padding: 9
            title: root.offered.retry?.title ?? ""
            symbol: "arrow.clockwise"
            onClicked: root.model.press("retry")
            opacity: visible ? 1 : 0
            Behavior on opacity { enabled: root.animated; NumberAnimation { duration: root.motion; easing.type: Easing.OutCubic } }
        }
        LevelMeter {
            width: parent.width
            height: 24
            visible: root.model.showsMeter
            active: root.model.showsMeter
            level: root.model.level
            dark: Theme.dark
            Accessible.ignored: true
            opacity: visible ? 1 : 0
            Behavior on opacity { enabled: root.animated; NumberAnimation { duration: root.motion; easing.type: Easing.OutCubic } }
        }
    }
}
