// The ground of a window, what it shows, and a sheet above that.
import QtQuick
import Quillo.Views

Rectangle {
    id: root

    property Item content: null
    property Item sheet: null

    color: Theme.window

    function fill(item, place) {
        item.parent = place
        item.anchors.fill = place
    }
    onContentChanged: if (content) fill(content, contentPlace)
    onSheetChanged: if (sheet) {
        fill(sheet, sheetPlace)
        sheet.forceActiveFocus()
    }

    FocusScope {
        id: contentPlace
        anchors.fill: parent
        focus: root.sheet === null
        enabled: root.sheet === null
    }
    Rectangle {
        anchors.fill: parent
        visible: root.sheet !== null
        color: Qt.rgba(0, 0, 0, Theme.dark ? 0.5 : 0.28)

        MouseArea {
            anchors.fill: parent
            hoverEnabled: true
            acceptedButtons: Qt.AllButtons
        }
        Rectangle {
            anchors { horizontalCenter: parent.horizontalCenter; top: parent.top; topMargin: 40 }
            width: Math.min(560, parent.width - 2 * 40)
            height: Math.min(root.sheet ? root.sheet.implicitHeight : 0, parent.height - 2 * 40)
            radius: 12
            color: Theme.window
            border { width: 1; color: Qt.alpha(Theme.primary, 0.14) }

            FocusScope {
                id: sheetPlace
                anchors.fill: parent
                focus: root.sheet !== null
                Accessible.role: Accessible.Dialog
                Accessible.name: root.sheet?.model?.title ?? ""
            }
        }
    }
}
