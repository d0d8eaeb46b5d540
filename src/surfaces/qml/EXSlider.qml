import QtQuick
import QtQuick.Templates as T
import Embrix

// A slider that stands on the steps from `from` to `to`: by the pointer, by the arrow keys and by
// whoever does not see it.
T.Slider {
    id: slider

    property string title
    readonly property real knob: 24

    implicitWidth: 200
    implicitHeight: 26
    snapMode: T.Slider.SnapAlways
    focusPolicy: Qt.StrongFocus
    opacity: enabled || !parent?.enabled ? 1 : 0.5
    Accessible.name: title

    background: Item {
        Rectangle {
            id: track
            objectName: "track"
            y: (parent.height - height) / 2
            width: parent.width
            height: 14
            radius: height / 2
            color: EX.track
            border.width: 2
            border.color: EX.inkFixed
        }
        Rectangle {
            objectName: "fill"
            y: track.y
            width: slider.visualPosition * (slider.width - slider.knob) + slider.knob / 2
            height: track.height
            radius: height / 2
            color: EX.mint
            border.width: 2
            border.color: EX.inkFixed
        }
    }
    handle: Rectangle {
        objectName: "knob"
        x: slider.visualPosition * (slider.width - width)
        y: (slider.height - height) / 2
        width: slider.knob
        height: slider.knob
        radius: slider.knob / 2
        color: "white"
        border.width: 2
        border.color: EX.inkFixed
        FocusRing { control: slider }
    }
}
