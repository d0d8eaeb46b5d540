import QtQuick
import Embrix

// A square tile that holds a symbol.
Rectangle {
    property alias symbol: mark.name

    implicitWidth: 36
    implicitHeight: 36
    radius: 11

    SymbolImage {
        id: mark
        anchors.centerIn: parent
        size: 19
        color: EX.inkFixed
    }
}
