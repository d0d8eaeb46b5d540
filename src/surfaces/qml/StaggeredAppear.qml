import QtQuick
import Embrix

// What comes up from below into its place, the further down a list the later.
Item {
    id: stage

    property int index: 0
    // Its size as it begins to come up, against its own.
    property real smallest: 1
    default property alias held: holder.data

    implicitHeight: holder.childrenRect.height

    SpringValue {
        id: appear
        from: 0
        target: 1
        response: 0.45
        damping: 0.8
        delay: Motion.appearDelay(stage.index)
    }
    Item {
        id: holder
        width: parent.width
        height: parent.height
        y: 12 * (1 - appear.value)
        scale: stage.smallest + (1 - stage.smallest) * appear.value
        opacity: Math.min(Math.max(appear.value, 0), 1)
    }
}
