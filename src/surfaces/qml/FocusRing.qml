import QtQuick
import Embrix

// Shows where the keyboard is.
Rectangle {
    property Item control

    anchors.fill: parent
    anchors.margins: -3
    radius: height / 2
    visible: control !== null && control.visualFocus
    color: "transparent"
    border.width: 2
    border.color: EX.ink
}
