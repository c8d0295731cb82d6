// A group of rows on a ground of its own, below its title.
import QtQuick
import Quillo.Views

Column {
    id: root

    required property FormSectionModel section
    required property FormModel form

    visible: section.isVisible
    spacing: 8

    Accessible.role: Accessible.Grouping
    Accessible.name: section.title

    Text {
        x: 4
        width: parent.width - 2 * x
        visible: text !== ""
        text: root.section.title
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        color: Theme.secondary
        font { family: Theme.fontFamily; pixelSize: 12; weight: Font.DemiBold }
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Row {
        anchors.right: parent.right
        visible: root.section.isOfButtons
        spacing: 8

        Repeater {
            model: root.section.isOfButtons ? root.section.rows : []

            PushButton {
                required property var modelData
                visible: modelData.isVisible
                enabled: modelData.isEnabled
                opacity: enabled ? 1 : 0.5
                title: modelData.title
                help: modelData.error || modelData.help
                prominent: modelData.isProminent
                destructive: modelData.isDestructive
                onClicked: root.form.press(modelData.id)
            }
        }
    }
    Rectangle {
        visible: !root.section.isOfButtons
        width: parent.width
        height: rows.height
        radius: 10
        color: Theme.card
        border { width: 1; color: Qt.alpha(Theme.primary, Theme.dark ? 0.1 : 0.08) }

        Column {
            id: rows
            width: parent.width

            Repeater {
                model: root.section.isOfButtons ? [] : root.section.rows

                FormRow {
                    required property var modelData
                    width: rows.width
                    row: modelData
                    form: root.form
                    // A line to the row above, which may be hidden.
                    divided: y > 0
                }
            }
        }
    }
}
