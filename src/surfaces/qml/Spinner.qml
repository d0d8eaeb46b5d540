import QtQuick
import Embrix

// A small sign that something is under way.
Item {
    id: spinner

    width: 16
    height: 16

    Repeater {
        model: 8
        Rectangle {
            required property int index
            x: 7
            y: 0
            width: 2
            height: 5
            radius: 1
            color: EX.muted
            opacity: 0.2 + 0.1 * index
            transform: Rotation {
                origin.x: 1
                origin.y: 8
                angle: 45 * index
            }
        }
    }
    RotationAnimation on rotation {
        running: spinner.visible && !Motion.still
        from: 0
        to: 360
        duration: 900
        loops: Animation.Infinite
    }
}
