import QtQuick
import Embrix

// Lets its target pop up and back whenever `value` changes.
Item {
    id: pop

    property Item target: parent
    property var value

    onValueChanged: if (!Motion.still && run.ready) run.restart()
    Component.onCompleted: run.ready = true

    SequentialAnimation {
        id: run
        property bool ready: false
        NumberAnimation {
            target: pop.target
            property: "scale"
            to: 1.35
            duration: 140
            easing: Motion.spring(0.5, 1)
        }
        NumberAnimation {
            target: pop.target
            property: "scale"
            to: 1
            duration: 350
            easing: Motion.spring(0.5, 0.7)
        }
    }
}
