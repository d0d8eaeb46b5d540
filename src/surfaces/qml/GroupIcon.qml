import QtQuick
import Embrix

// The icon of the application that a group belongs to; the group's symbol where there is none.
Item {
    id: icon

    property alias bundlePath: image.bundlePath
    property alias symbol: mark.name
    property alias color: mark.color
    property real size: 32

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    BundleIcon {
        id: image
        anchors.fill: parent
        visible: isFound
    }
    SymbolImage {
        id: mark
        anchors.centerIn: parent
        visible: !image.isFound
        size: icon.size * 0.6
        color: EX.ink
    }
}
