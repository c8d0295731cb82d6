// One row: what it is about on the left, with its help and its error; what it holds on the right,
// or below where that needs the whole width.
import QtQuick
import Quillo.Views

Item {
    id: root

    required property FormRowModel row
    required property FormModel form
    property bool divided: false

    readonly property bool isWide: row.kind === FormRowModel.List || row.kind === FormRowModel.Lines
    readonly property real sides: 16
    readonly property bool hasTexts: row.label !== "" || row.help !== "" || row.error !== ""

    visible: row.isVisible
    implicitHeight: Math.max(46, isWide ? control.y + control.height + 12
                                        : Math.max(texts.height, control.height) + 2 * 11)
    opacity: row.isEnabled ? 1 : 0.5

    Rectangle {
        visible: root.divided
        x: root.sides
        width: parent.width - x
        height: 1
        color: Qt.alpha(Theme.primary, 0.08)
    }
    Column {
        id: texts
        x: root.sides
        y: root.isWide ? 12 : Math.round((root.height - height) / 2)
        width: root.isWide ? parent.width - 2 * root.sides : control.x - x - 16
        spacing: 3

        Text {
            width: parent.width
            visible: text !== ""
            text: root.row.label
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            color: Theme.primary
            font { family: Theme.fontFamily; pixelSize: 13 }
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Text {
            width: parent.width
            visible: text !== ""
            text: root.row.help
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            lineHeight: 1.1
            color: Theme.secondary
            font { family: Theme.fontFamily; pixelSize: 12 }
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Row {
            width: parent.width
            visible: root.row.error !== ""
            spacing: 6

            Symbol {
                id: warning
                y: 1
                width: 13
                height: 13
                name: "exclamationmark.triangle.fill"
                color: Theme.red
            }
            Text {
                width: parent.width - warning.width - parent.spacing
                text: root.row.error
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                color: Theme.red
                font { family: Theme.fontFamily; pixelSize: 12; weight: Font.Medium }
                Accessible.role: Accessible.AlertMessage
                Accessible.name: text
            }
        }
    }
    Loader {
        id: control
        readonly property real mostWidth: root.isWide || !root.hasTexts
            ? root.width - 2 * root.sides : Math.round((root.width - 2 * root.sides) * 0.55)
        x: root.isWide || !root.hasTexts ? root.sides : root.width - root.sides - width
        y: root.isWide ? texts.y + texts.height + (root.hasTexts ? 10 : 0)
                       : Math.round((root.height - height) / 2)
        width: root.isWide || root.row.kind === FormRowModel.Note ? mostWidth
                                                                  : Math.min(implicitWidth, mostWidth)
        enabled: root.row.isEnabled
        sourceComponent: [toggle, choice, shortcut, field, list, level, note, button, lines][root.row.kind]
    }

    Component {
        id: toggle
        ToggleSwitch {
            name: root.row.label
            help: root.row.error || root.row.help
            on: root.row.value
            onToggled: root.form.change(root.row.id, !root.row.value)
        }
    }
    Component {
        id: choice
        FormChoice {
            row: root.row
            onChosen: value => root.form.change(root.row.id, value)
        }
    }
    Component {
        id: shortcut
        FormShortcut {
            row: root.row
            onChosen: value => root.form.change(root.row.id, value)
        }
    }
    Component {
        id: field
        FormField { row: root.row; form: root.form }
    }
    Component {
        id: lines
        FormField { row: root.row; form: root.form; multiline: true }
    }
    Component {
        id: list
        FormList { row: root.row; form: root.form }
    }
    Component {
        id: level
        LevelBar { name: root.row.label; level: root.row.level }
    }
    Component {
        id: note
        Row {
            spacing: 8
            Symbol {
                id: sign
                visible: root.row.tone !== FormRowModel.Plain
                width: 15
                height: 15
                name: root.row.tone === FormRowModel.Ready ? "checkmark.circle.fill"
                                                           : "exclamationmark.triangle.fill"
                color: root.row.tone === FormRowModel.Ready ? Theme.green : Theme.orange
            }
            Text {
                width: parent.width - (sign.visible ? sign.width + parent.spacing : 0)
                text: root.row.text
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                lineHeight: 1.1
                color: Theme.secondary
                font { family: Theme.fontFamily; pixelSize: 12 }
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }
    Component {
        id: button
        PushButton {
            title: root.row.title
            help: root.row.error || root.row.help
            prominent: root.row.isProminent
            destructive: root.row.isDestructive
            onClicked: root.form.press(root.row.id)
        }
    }
}
