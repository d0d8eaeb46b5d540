import QtQuick
import Embrix

// The chunky look of what stands out: a flat colour in a dark outline over a hard shadow.
Item {
    property alias color: face.color
    property alias radius: face.radius
    property real shadow: 3
    property bool outlined: true

    Rectangle {
        y: parent.shadow
        width: parent.width
        height: parent.height
        radius: face.radius
        color: EX.inkFixed
        visible: parent.shadow > 0
    }
    Rectangle {
        id: face
        anchors.fill: parent
        border.width: parent.outlined ? 2 : 0
        border.color: EX.inkFixed
    }
}
