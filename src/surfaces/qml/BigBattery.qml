import QtQuick
import Embrix

// A battery that fills as it appears, follows its charge, and pulses while it is on power.
Item {
    id: battery

    property real fraction: 0
    property bool powered: false
    property real pulse: 0
    readonly property alias level: charge.value

    implicitWidth: art.implicitWidth
    implicitHeight: art.implicitHeight
    onFractionChanged: {
        if (!charge.isReady)
            return;
        charge.response = 0.8;
        charge.damping = 1;
        charge.target = fraction;
    }
    Component.onCompleted: {
        charge.isReady = true;
        charge.target = fraction;
    }

    SpringValue {
        id: charge
        property bool isReady: false
        response: 1.1
        damping: 0.8
    }
    SequentialAnimation on pulse {
        running: battery.powered && battery.visible && !Motion.still
        loops: Animation.Infinite
        NumberAnimation {
            from: 0
            to: 1
            duration: 900
            easing: Motion.easeInOut
        }
        NumberAnimation {
            from: 1
            to: 0
            duration: 900
            easing: Motion.easeInOut
        }
    }
    BatteryArt {
        id: art
        width: battery.width
        height: width * implicitHeight / implicitWidth
        level: battery.level
        pulse: battery.pulse
        powered: battery.powered
    }
}
