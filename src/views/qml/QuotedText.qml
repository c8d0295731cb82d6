// A text of the user's on a ground of its own; a long one scrolls, also by the arrow keys.
import QtQuick
import Quillo.Views

Rectangle {
    id: quote

    required property string text
    property real textSize: 13
    readonly property bool scrolls: label.implicitHeight + 2 * 8 > height

    implicitHeight: Math.min(110, Math.ceil(label.implicitHeight) + 2 * 8)
    radius: 8
    color: Theme.field
    border { width: activeFocus ? 2 : 0; color: Theme.accent }
    activeFocusOnTab: scrolls

    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.focusable: scrolls

    function scroll(distance) {
        flick.contentY = Math.max(0, Math.min(flick.contentHeight - flick.height, flick.contentY + distance))
    }
    Keys.onDownPressed: scroll(textSize * 1.5)
    Keys.onUpPressed: scroll(-textSize * 1.5)

    Flickable {
        id: flick
        anchors { fill: parent; leftMargin: 10; rightMargin: 10; topMargin: 2; bottomMargin: 2 }
        contentHeight: label.implicitHeight + 2 * 6
        boundsBehavior: Flickable.StopAtBounds
        interactive: quote.scrolls
        clip: true

        Text {
            id: label
            y: 6
            width: quote.width - 2 * 10 - 4
            text: quote.text
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            color: Theme.primary
            font { family: Theme.fontFamily; pixelSize: quote.textSize }
            lineHeight: 1.15
            Accessible.ignored: true
        }
    }
    Rectangle {
        visible: quote.scrolls
        x: parent.width - 7
        y: 4 + flick.visibleArea.yPosition * (parent.height - 8)
        width: 4
        height: flick.visibleArea.heightRatio * (parent.height - 8)
        radius: 2
        color: Qt.alpha(Theme.primary, 0.3)
    }
}
