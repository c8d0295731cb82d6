// What the text below is, and in which language.
import QtQuick
import Quillo.Views

Item {
    id: section

    required property string title
    property string language: ""
    property string verdict: ""
    property bool matches: true

    implicitHeight: 16

    Text {
        id: label
        anchors { left: parent.left; verticalCenter: parent.verticalCenter }
        text: section.title
        color: Theme.primary
        font { family: Theme.fontFamily; pixelSize: 11; weight: Font.DemiBold }
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Text {
        anchors { left: label.right; leftMargin: 6; verticalCenter: parent.verticalCenter }
        visible: text !== ""
        text: section.language
        textFormat: Text.PlainText
        color: Theme.secondary
        font { family: Theme.fontFamily; pixelSize: 11 }
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Item {
        anchors { left: label.right; leftMargin: 8; verticalCenter: parent.verticalCenter }
        visible: section.verdict !== ""
        height: parent.height

        readonly property color color: section.matches ? Theme.green : Theme.orange

        Symbol {
            id: icon
            anchors.verticalCenter: parent.verticalCenter
            width: 13
            height: 13
            name: section.matches ? "checkmark.circle.fill" : "exclamationmark.triangle.fill"
            color: parent.color
        }
        Text {
            anchors { left: icon.right; leftMargin: 4; verticalCenter: parent.verticalCenter }
            text: section.verdict
            color: parent.color
            font { family: Theme.fontFamily; pixelSize: 11; weight: Font.Medium }
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
}
