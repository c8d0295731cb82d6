// Any form: its sections one below the other, scrolled when there are more than fit.
import QtQuick
import Quillo.Views

FocusScope {
    id: root

    required property FormModel model
    readonly property int margin: 28
    implicitWidth: 600
    implicitHeight: column.implicitHeight + 2 * margin

    Accessible.role: Accessible.Pane
    Accessible.name: model.title

    // What gets the keyboard is brought to where it can be seen.
    readonly property Item focused: Window.activeFocusItem
    onFocusedChanged: {
        let item = focused
        while (item && item !== column) item = item.parent
        if (!item) return
        const top = focused.mapToItem(column, 0, 0).y + margin - 12
        const bottom = focused.mapToItem(column, 0, focused.height).y + margin + 12
        flick.contentY = Math.max(Math.min(flick.contentY, top), bottom - flick.height)
    }

    Flickable {
        id: flick
        anchors.fill: parent
        contentHeight: root.implicitHeight
        boundsBehavior: Flickable.StopAtBounds
        interactive: contentHeight > height
        clip: true

        Column {
            id: column
            readonly property real mostWidth: 680
            width: Math.min(mostWidth, flick.width - 2 * root.margin)
            x: Math.round((flick.width - width) / 2)
            y: root.margin
            spacing: 22

            Text {
                width: parent.width
                text: root.model.title
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                color: Theme.primary
                font { family: Theme.fontFamily; pixelSize: 22; weight: Font.DemiBold }
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            Repeater {
                model: root.model.sections

                FormSection {
                    required property var modelData
                    width: column.width
                    section: modelData
                    form: root.model
                }
            }
        }
    }
    Rectangle {
        visible: flick.interactive
        x: parent.width - 9
        y: 4 + flick.visibleArea.yPosition * (parent.height - 8)
        width: 5
        height: flick.visibleArea.heightRatio * (parent.height - 8)
        radius: 2.5
        color: Qt.alpha(Theme.primary, 0.28)
    }
}
