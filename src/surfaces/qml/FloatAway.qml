import QtQuick
import Embrix

// A text that rises from where it is put, stands there to be read, and is gone.
Rectangle {
    id: pill

    property alias text: label.text
    property real rise: 0
    property real fade: 0

    width: label.implicitWidth + 16
    height: label.implicitHeight + 8
    radius: height / 2
    color: EX.mint
    border.width: 2
    border.color: EX.inkFixed
    opacity: 1 - fade
    scale: 0.8 + 0.25 * rise
    transform: Translate { y: -46 * pill.rise }

    EXText {
        id: label
        anchors.centerIn: parent
        font: EXFont.text(13, 700)
        color: EX.inkFixed
    }
    SequentialAnimation {
        running: true
        onFinished: pill.destroy()
        EaseOut {
            target: pill
            property: "rise"
            to: 1
            milliseconds: 200
        }
        NumberAnimation {
            target: pill
            property: "fade"
            to: 1
            duration: Motion.time(900)
            easing.type: Easing.InCubic
        }
    }
}
