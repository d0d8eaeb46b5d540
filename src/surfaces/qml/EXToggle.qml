import QtQuick
import QtQuick.Templates as T
import Embrix

// A switch: its words, and at their right a pill with a knob that slides.
T.Switch {
    id: lever

    readonly property real trackWidth: 50
    readonly property real inset: 4

    implicitWidth: text !== "" ? Math.ceil(label.implicitWidth) : trackWidth
    implicitHeight: Math.max(indicator.height, Math.ceil(label.implicitHeight))
    spacing: 12
    focusPolicy: Qt.StrongFocus
    opacity: enabled || !parent?.enabled ? 1 : 0.45
    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: checked
    Keys.onReturnPressed: click()
    Keys.onEnterPressed: click()

    function click() {
        lever.toggle();
        lever.toggled();
    }

    indicator: Rectangle {
        x: lever.width - width
        y: (lever.height - height) / 2
        width: lever.trackWidth
        height: 30
        radius: height / 2
        color: lever.checked ? EX.mint : EX.well
        border.width: 2
        border.color: EX.inkFixed
        Behavior on color {
            ColorAnimation {
                duration: Motion.springTime(0.18, 0.85)
                easing: Motion.spring(0.18, 0.85)
            }
        }
        Rectangle {
            id: knob
            objectName: "knob"
            readonly property real way: parent.width - width - 2 * lever.inset
            x: lever.inset + way * place.value
            y: lever.inset
            width: parent.height - 2 * lever.inset
            height: width
            radius: height / 2
            color: "white"
            border.width: 2
            border.color: EX.inkFixed
        }
        FocusRing { control: lever }
    }
    SpringValue {
        id: place
        target: lever.position
        response: 0.18
        damping: 0.85
    }
    contentItem: EXText {
        id: label
        rightPadding: lever.trackWidth + lever.spacing
        verticalAlignment: Text.AlignVCenter
        text: lever.text
        font: EXFont.text(14, 500)
    }
}
