import QtQuick
import QtQuick.Templates as T
import Embrix

// A round button that holds a symbol.
T.Button {
    id: button

    property string symbol
    property real symbolSize: 11
    property real symbolWeight: 1
    property color fill: EX.well
    property color ink: EX.ink
    property string help: ""

    implicitWidth: 32
    implicitHeight: 32
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    opacity: enabled || !parent?.enabled ? 1 : 0.45
    scale: down ? 0.94 : 1
    Behavior on scale { EaseOut { milliseconds: 60 } }
    Accessible.name: help
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    background: Rectangle {
        radius: height / 2
        color: button.hovered ? EX.track : button.fill
        FocusRing { control: button }
    }
    contentItem: Item {
        SymbolImage {
            anchors.centerIn: parent
            name: button.symbol
            // A symbol's drawing fills its square; a glyph of that size stands a little smaller.
            size: button.symbolSize * 1.25
            weight: button.symbolWeight
            color: button.ink
        }
    }
    HelpTip { text: button.help; shown: button.hovered || button.visualFocus }
}
