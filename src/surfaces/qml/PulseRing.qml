import QtQuick
import Embrix

// A ring that grows and fades, so many `times`, or for ever when that is 0.
Rectangle {
    id: ring

    property real growth: 1.8
    property int times: 0
    property real phase: 1

    radius: height / 2
    color: "transparent"
    border.width: 2
    visible: !Motion.still && phase < 1
    opacity: 1 - phase
    scale: 1 + (growth - 1) * phase

    NumberAnimation on phase {
        running: !Motion.still && ring.parent !== null && ring.parent.visible
        from: 0
        to: 1
        duration: 1400
        easing: Motion.easeOut
        loops: ring.times > 0 ? ring.times : Animation.Infinite
    }
}
