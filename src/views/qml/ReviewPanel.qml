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
    Accessible.name: "Review translation"

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
                text: "Review translation"
                color: Theme.primary
                font { family: Theme.fontFamily; pixelSize: 15; weight: Font.DemiBold }
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
        }
        Item { width: 1; height: 4 }

        SectionTitle {
            width: parent.width
            title: "You said"
            language: root.model.youSaidLanguage
        }
        QuotedText {
            width: parent.width
            text: root.model.youSaid
        }
        Item { width: 1; height: 4 }

        SectionTitle {
            width: parent.width
            visible: root.model.showsMeans
            title: "Means"
            verdict: root.model.verdictText
            matches: root.model.matches
        }
        QuotedText {
            width: parent.width
            visible: root.model.showsMeans
            text: root.model.means
        }
        Item { width: 1; height: 4; visible: root.model.showsMeans }

        SectionTitle {
            width: parent.width
            title: "Will insert"
            language: root.model.insertLanguage
        }
        QuotedText {
            width: parent.width
            text: root.model.willInsert
            textSize: 14
        }
        Item { width: 1; height: 8 }

        Item {
            width: parent.width
            height: 30

            PushButton {
                id: reRecord
                anchors.left: parent.left
                title: "Re-record"
                onClicked: root.model.reRecord()
            }
            PushButton {
                id: discard
                anchors { right: insert.left; rightMargin: 8 }
                title: "Discard"
                onClicked: root.model.discard()
            }
            PushButton {
                id: insert
                anchors.right: parent.right
                prominent: true
                title: root.model.insertTitle
                onClicked: root.model.insert()
            }
        }
    }
}
