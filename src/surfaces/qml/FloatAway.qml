import QtQuick
import Embrix

// A text that rises from where it is put, and is gone.
Rectangle {
    id: pill

    property alias text: label.text
    property real phase: 0

    width: label.implicitWidth + 16
    height: label.implicitHeight + 8
    radius: height / 2
    color: EX.mint
    border.width: 2
    border.color: EX.inkFixed
    opacity: 1 - phase
    scale: 0.8 + 0.25 * phase
    transform: Translate { y: -46 * pill.phase }

    EXText {
        id: label
        anchors.centerIn: parent
        font: EXFont.text(13, 700)
        color: EX.inkFixed
    }
    NumberAnimation on phase {
        to: 1
        duration: Motion.time(1100)
        easing: Motion.easeOut
        onFinished: pill.destroy()
    }
}
