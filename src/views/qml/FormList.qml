// Elements to look through and remove, and below them the fields of a new one.
import QtQuick
import Quillo.Views

Column {
    id: root

    required property FormRowModel row
    required property FormModel form
    readonly property int lineHeight: 32
    readonly property int mostLines: 7

    spacing: 8

    Rectangle {
        width: parent.width
        height: Math.max(1, Math.min(root.mostLines, list.count)) * root.lineHeight
        radius: 7
        color: Theme.field
        border {
            width: list.activeFocus ? 2 : 1
            color: list.activeFocus ? Theme.accent : Qt.alpha(Theme.primary, 0.12)
        }

        Text {
            anchors.centerIn: parent
            visible: list.count === 0
            text: root.row.title
            textFormat: Text.PlainText
            color: Theme.secondary
            font { family: Theme.fontFamily; pixelSize: 12 }
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        ListView {
            id: list
            anchors { fill: parent; margins: 1 }
            model: root.row.elements
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            highlightMoveDuration: 0
            activeFocusOnTab: count > 0
            keyNavigationEnabled: true

            Accessible.role: Accessible.List
            Accessible.name: root.row.label
            Accessible.description: root.row.error || root.row.help
            Accessible.focusable: count > 0
            Keys.onDeletePressed: if (currentIndex >= 0) root.form.press(root.row.id + "." + currentIndex + ".remove")

            delegate: Item {
                id: element
                required property int index
                required property string text
                required property var columns
                readonly property bool isCurrent: ListView.isCurrentItem && list.activeFocus
                width: list.width
                height: root.lineHeight

                Accessible.role: Accessible.ListItem
                Accessible.name: text

                Rectangle {
                    anchors { fill: parent; margins: 2 }
                    radius: 5
                    visible: element.isCurrent
                    color: Qt.alpha(Theme.accent, 0.18)
                }
                Row {
                    anchors { left: parent.left; right: remove.left; leftMargin: 10; rightMargin: 8; verticalCenter: parent.verticalCenter }
                    Repeater {
                        model: element.columns
                        Text {
                            required property string modelData
                            width: parent.width / element.columns.length
                            rightPadding: 8
                            text: modelData
                            textFormat: Text.PlainText
                            elide: Text.ElideRight
                            maximumLineCount: 1
                            color: Theme.primary
                            font { family: Theme.fontFamily; pixelSize: 13 }
                            Accessible.ignored: true
                        }
                    }
                }
                IconButton {
                    id: remove
                    anchors { right: parent.right; rightMargin: 10; verticalCenter: parent.verticalCenter }
                    activeFocusOnTab: false  // the list is one stop; Delete removes
                    symbol: "xmark"
                    name: root.form.titleOf(root.row.id + "." + element.index + ".remove")
                    onClicked: root.form.press(root.row.id + "." + element.index + ".remove")
                }
            }
        }
    }
    Row {
        id: adding
        width: parent.width
        spacing: 8

        function add() {
            if (!root.row.canAdd) return
            root.form.press(root.row.id + ".add")
            fields.itemAt(0).forceActiveFocus()
        }

        Repeater {
            id: fields
            model: root.row.columns

            TextEntry {
                required property int index
                required property var modelData
                width: (adding.width - add.width - adding.spacing * fields.count) / fields.count
                name: modelData.label
                placeholder: modelData.label
                value: root.row.draft[index] ?? ""
                bad: root.row.error !== ""
                onTyped: text => root.form.type(root.row.id + ".new." + modelData.id, text)
                onAccepted: adding.add()
            }
        }
        PushButton {
            id: add
            title: root.form.titleOf(root.row.id + ".add")
            enabled: root.row.canAdd
            opacity: enabled ? 1 : 0.5
            onClicked: adding.add()
        }
    }
}
