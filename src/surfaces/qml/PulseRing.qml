import QtQuick
import Embrix

// A ring that grows and fades, so many `times`, or for ever when that is 0; then nothing is left of
// it.
Item {
    id: ring

    property color color: EX.inkFixed
    property int times: 0
    // Its size at the end of its way, against its own.
    property real growth: 1.8
    property bool on: true
    property real phase: 1

    visible: on && !Motion.still && phase < 1
    opacity: 1 - phase
    scale: 1 + (growth - 1) * phase

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: "transparent"
        border.width: 2
        border.color: ring.color
    }
    NumberAnimation on phase {
        running: ring.on && !Motion.still && ring.parent !== null && ring.parent.visible
        from: 0
        to: 1
        duration: 1400
        easing: Motion.easeOut
        loops: ring.times > 0 ? ring.times : Animation.Infinite
    }
}
