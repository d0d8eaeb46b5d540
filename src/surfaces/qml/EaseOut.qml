import QtQuick
import Embrix

// A way that slows down towards its end; none at all while nothing moves.
NumberAnimation {
    property int milliseconds: 180

    duration: Motion.time(milliseconds)
    easing: Motion.easeOut
}
