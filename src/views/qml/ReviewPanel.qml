// The user looks at a translation before it is inserted.
import QtQuick
import Quillo.Views

FocusScope {
    id: root

    required property ReviewModel model
    property bool translucent: true
    property alias surface: ground.surface
    // Room for the shadow, around what the panel is said to cover.
    readonly property int margin: translucent ? 24 : 0

    implicitWidth: 460
    implicitHeight: column.implicitHeight + 2 * 20

    Accessible.role: Accessible.Dialog
    Accessible.name: model.title

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

    Column {
        id: column
        x: root.margin + 20
        y: root.margin + 20
        width: root.implicitWidth - 2 * 20
        spacing: 6

        Item {
            width: parent.width
            height: 22

            Symbol {
                id: shield
                anchors.verticalCenter: parent.verticalCenter
                width: 20
                height: 20
                name: "checkmark.shield"
                color: Theme.accent
            }
            Text {
                anchors { left: shield.right; leftMargin: 8; verticalCenter: parent.verticalCenter }
                text: root.model.title
                color: Theme.primary
                font { family: Theme.fontFamily; pixelSize: 15; weight: Font.DemiBold }
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
        }
        Item { width: 1; height: 4 }

        Repeater {
            id: sections
            model: root.model.sections

            Column {
                id: section
                required property var modelData
                required property int index
                readonly property bool isLast: index === sections.count - 1
                width: column.width
                spacing: column.spacing

                SectionTitle {
                    width: parent.width
                    title: section.modelData.title
                    language: section.modelData.language
                    verdict: section.modelData.verdict
                    matches: section.modelData.matches
                }
                QuotedText {
                    width: parent.width
                    text: section.modelData.text
                    textSize: section.isLast ? 14 : 13
                }
                Item { width: 1; height: section.isLast ? 8 : 4 }
            }
        }

        Item {
            width: parent.width
            height: 30

            PushButton {
                id: reRecord
                anchors.left: parent.left
                title: root.model.controls["re-record"].title
                onClicked: root.model.press("re-record")
            }
            PushButton {
                id: discard
                anchors { right: insert.left; rightMargin: 8 }
                title: root.model.controls.discard.title
                onClicked: root.model.press("discard")
            }
            PushButton {
                id: insert
                anchors.right: parent.right
                prominent: true
                title: root.model.controls.insert.title
                onClicked: root.model.press("insert")
            }
        }
    }
}
