// The options of a choice, above everything in the window for as long as one is looked for.
import QtQuick
import Quillo.Views

FocusScope {
    id: menu

    required property var options
    required property int current
    required property Item from
    signal chosen(string value)

    // Return takes an option here, and Escape none.
    property bool usesReturnAndEscape: true

    function open() {
        parent = Window.contentItem
        const place = from.mapToItem(parent, 0, 0)
        box.width = Math.max(from.width, Math.min(list.widest + 2 * 5 + 46, parent.width - 16))
        box.height = Math.min(options.length * list.lineHeight + 2 * 5, parent.height - 16)
        box.x = Math.max(8, Math.min(place.x, parent.width - box.width - 8))
        // What is chosen lies where the button was.
        box.y = Math.max(8, Math.min(place.y - Math.max(0, current) * list.lineHeight - 5,
                                     parent.height - box.height - 8))
        list.currentIndex = Math.max(0, current)
        visible = true
        list.forceActiveFocus()
    }
    function close() {
        visible = false
        from.forceActiveFocus(Qt.PopupFocusReason)
    }
    function take(index) {
        close()
        if (index !== current) chosen(options[index].value)
    }

    anchors.fill: parent
    visible: false

    MouseArea {
        anchors.fill: parent
        onClicked: menu.close()
        onWheel: wheel => wheel.accepted = true
    }
    Rectangle {
        id: box
        radius: 9
        color: Theme.dark ? Qt.lighter(Theme.card, 1.25) : Theme.card
        border { width: 1; color: Qt.alpha(Theme.primary, 0.18) }

        ListView {
            id: list

            readonly property int lineHeight: 28
            readonly property real widest: metrics.widest
            property bool usesReturnAndEscape: true

            anchors { fill: parent; margins: 5 }
            model: menu.options
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            highlightMoveDuration: 0
            keyNavigationEnabled: true

            Accessible.role: Accessible.List
            Accessible.name: menu.from.row.label
            Keys.onReturnPressed: menu.take(currentIndex)
            Keys.onEnterPressed: menu.take(currentIndex)
            Keys.onSpacePressed: menu.take(currentIndex)
            Keys.onEscapePressed: menu.close()
            Keys.onTabPressed: menu.close()

            delegate: Item {
                id: option
                required property int index
                required property var modelData
                readonly property bool isCurrent: ListView.isCurrentItem
                width: list.width
                height: list.lineHeight

                Accessible.role: Accessible.ListItem
                Accessible.name: modelData.label
                Accessible.selectable: true
                Accessible.selected: index === menu.current
                Accessible.onPressAction: menu.take(index)

                Rectangle {
                    anchors.fill: parent
                    radius: 6
                    visible: option.isCurrent
                    color: Theme.accent
                }
                Symbol {
                    anchors { left: parent.left; leftMargin: 8; verticalCenter: parent.verticalCenter }
                    visible: option.index === menu.current
                    width: 11
                    height: 11
                    name: "checkmark"
                    color: option.isCurrent ? Theme.onAccent : Theme.primary
                }
                Text {
                    anchors { left: parent.left; right: parent.right; leftMargin: 26; rightMargin: 8; verticalCenter: parent.verticalCenter }
                    text: option.modelData.label
                    textFormat: Text.PlainText
                    elide: Text.ElideRight
                    color: option.isCurrent ? Theme.onAccent : Theme.primary
                    font { family: Theme.fontFamily; pixelSize: 13 }
                    Accessible.ignored: true
                }
                MouseArea {
                    anchors.fill: parent
                    hoverEnabled: true
                    onEntered: list.currentIndex = option.index
                    onClicked: menu.take(option.index)
                }
            }
        }
    }
    FontMetrics {
        id: metrics
        font { family: Theme.fontFamily; pixelSize: 13 }
        readonly property real widest: menu.options.reduce(
            (width, option) => Math.max(width, metrics.advanceWidth(option.label)), 0)
    }
}
