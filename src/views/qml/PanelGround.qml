// The ground of a panel: a material that shines through where the desktop can blend windows.
import QtQuick
import Quillo.Views

Item {
    id: ground

    property alias surface: surface
    property bool translucent: true
    property int margin: 0
    property real radius: 12
    property real borderOpacity: 0.12

    Shadow {
        anchors { fill: parent; margins: -ground.margin }
        visible: ground.translucent
        extent: ground.margin
        radius: ground.radius
    }
    Rectangle {
        anchors.fill: parent
        visible: !ground.translucent
        color: Theme.opaqueMaterial
    }
    Surface {
        id: surface
        anchors.fill: parent
        radius: ground.radius
        color: ground.translucent ? Theme.material : Theme.opaqueMaterial
        borderColor: Qt.alpha(Theme.primary, ground.borderOpacity)
    }
}
