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
    onValueChanged: if (roll.ready) roll.restart()
    Component.onCompleted: {
        roll.ready = true;
        roll.restart();
    }

    NumberAnimation {
        id: roll
        property bool ready: false
        target: figure
        property: "shown"
        to: figure.value
        duration: Motion.time(figure.duration)
        easing: Motion.easeOut
    }
}
