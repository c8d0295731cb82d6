// A few shortcuts to choose from, each drawn as its keys.
import QtQuick
import Quillo.Views

Item {
    id: root

    required property FormRowModel row
    signal chosen(string value)

    // In one line where there is room for it.
    property real wholeWidth: 0
    function measure() {
        let width = -flow.spacing
        for (let i = 0; i < options.count; ++i)
            width += (options.itemAt(i)?.implicitWidth ?? 0) + flow.spacing
        wholeWidth = width
    }
    implicitWidth: wholeWidth
    implicitHeight: flow.height

    Accessible.role: Accessible.Grouping
    Accessible.name: row.label
    Accessible.description: row.error || row.help

    Flow {
        id: flow
        width: root.width
        spacing: 8

        Repeater {
            id: options
            model: root.row.options
            onItemAdded: root.measure()
            onItemRemoved: root.measure()

            Item {
                id: option
                required property var modelData
                readonly property bool isChosen: modelData.value === root.row.value

                implicitWidth: keys.width + 2 * 8
                implicitHeight: 34
                activeFocusOnTab: true

                Accessible.role: Accessible.RadioButton
                Accessible.name: modelData.label
                Accessible.description: root.row.label
                Accessible.checkable: true
                Accessible.checked: isChosen
                Accessible.focusable: true
                Accessible.focused: activeFocus
                Accessible.onPressAction: root.chosen(modelData.value)
                Keys.onSpacePressed: root.chosen(modelData.value)

                FocusRing { around: 8 }
                Rectangle {
                    anchors.fill: parent
                    radius: 8
                    color: option.isChosen ? Qt.alpha(Theme.accent, 0.14) : "transparent"
                    border {
                        width: option.isChosen ? 1.5 : 1
                        color: option.isChosen ? Theme.accent : Qt.alpha(Theme.primary, 0.16)
                    }
                }
                Row {
                    id: keys
                    anchors.centerIn: parent
                    spacing: 3

                    Repeater {
                        model: option.modelData.label.split(" ")

                        Rectangle {
                            required property string modelData
                            width: Math.max(height, cap.implicitWidth + 10)
                            height: 22
                            radius: 5
                            color: Theme.card
                            border { width: 1; color: Qt.alpha(Theme.primary, 0.24) }

                            Text {
                                id: cap
                                anchors.centerIn: parent
                                text: parent.modelData
                                textFormat: Text.PlainText
                                color: Theme.primary
                                font { family: Theme.fontFamily; pixelSize: 12; weight: Font.Medium }
                                Accessible.ignored: true
                            }
                        }
                    }
                }
                MouseArea {
                    anchors.fill: parent
                    onClicked: {
                        option.forceActiveFocus(Qt.MouseFocusReason)
                        root.chosen(option.modelData.value)
                    }
                }
            }
        }
    }
}
