import QtQuick
import Embrix

// Says of a server that others on the network reach it.
Rectangle {
    id: badge

    property string help

    implicitWidth: row.width + 18
    implicitHeight: 24
    radius: height / 2
    color: EX.coral
    Accessible.role: Accessible.StaticText
    Accessible.name: label.text
    Accessible.description: help

    Row {
        id: row
        x: 9
        height: parent.height
        spacing: 5
        SymbolImage {
            anchors.verticalCenter: parent.verticalCenter
            name: "antenna.radiowaves.left.and.right"
            size: 14
            color: EX.inkFixed
        }
        EXText {
            id: label
            anchors.verticalCenter: parent.verticalCenter
            text: "On your network"
            font: EXFont.text(12, 700)
            color: EX.inkFixed
        }
    }
    HoverHandler { id: pointer }
    HelpTip { text: badge.help; shown: pointer.hovered }
}
