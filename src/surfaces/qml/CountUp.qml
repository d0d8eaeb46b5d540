import QtQuick
import Embrix

// A figure that rolls to its value, on appearing and at each change.
EXText {
    id: figure

    property real value: 0
    property int duration: 900
    property var format: shown => shown.toString()
    property real shown: 0

    text: format(shown)
    elide: Text.ElideNone
    function rollOn() {
        roll.stop();
        if (roll.ready && format(value) === text) {
            shown = value;
            return;
        }
        roll.to = value;
        roll.start();
    }
    onValueChanged: if (roll.ready) rollOn()
    Component.onCompleted: {
        roll.ready = true;
        rollOn();
    }

    NumberAnimation {
        id: roll
        property bool ready: false
        target: figure
        property: "shown"
        duration: Motion.time(figure.duration)
        easing: Motion.easeOut
    }
}
