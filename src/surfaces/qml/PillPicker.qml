import QtQuick
import QtQuick.Templates as T
import Embrix

// A row of pills of which one is selected. `options` holds maps with a value and a label; whoever
// owns it says which is selected, and is told what is picked.
Item {
    id: picker

    property var options: []
    property var selection
    signal picked(var value)

    readonly property int place: options.findIndex(option => option.value === selection)

    function step(by) {
        const next = place + by;
        if (next < 0 || next >= options.length)
            return;
        picked(options[next].value);
        if (pills.itemAt(place) !== null)
            pills.itemAt(place).forceActiveFocus(Qt.TabFocusReason);
    }

    implicitWidth: row.width
    implicitHeight: row.height
    opacity: enabled || !parent?.enabled ? 1 : 0.45

    Repeater {
        model: picker.options.length
        Rectangle {
            required property int index
            readonly property Item pill: pills.count > index ? pills.itemAt(index) : null
            x: pill !== null ? pill.x : 0
            width: pill !== null ? pill.width : 0
            height: row.height
            radius: height / 2
            color: EX.well
        }
    }
    // The marker slides to the pill that is selected.
    Rectangle {
        id: marker
        objectName: "marker"
        readonly property Item pill: picker.place >= 0 && pills.count > picker.place ? pills.itemAt(picker.place) : null
        visible: pill !== null
        x: left.value
        width: extent.value
        height: row.height
        radius: height / 2
        color: EX.primaryFill
    }
    SpringValue {
        id: left
        target: marker.pill !== null ? marker.pill.x : 0
        response: 0.3
        damping: 0.8
    }
    SpringValue {
        id: extent
        target: marker.pill !== null ? marker.pill.width : 0
        response: 0.3
        damping: 0.8
    }
    Row {
        id: row
        spacing: 6
        Repeater {
            id: pills
            model: picker.options
            T.AbstractButton {
                id: pill
                required property var modelData
                required property int index
                readonly property bool isSelected: index === picker.place

                objectName: "pill-" + modelData.value
                implicitWidth: Math.ceil(label.implicitWidth) + 28
                implicitHeight: 32
                focusPolicy: Qt.StrongFocus
                text: modelData.label
                Accessible.role: Accessible.RadioButton
                Accessible.name: text
                Accessible.checkable: true
                Accessible.checked: isSelected
                Keys.onReturnPressed: clicked()
                Keys.onEnterPressed: clicked()
                Keys.onLeftPressed: picker.step(-1)
                Keys.onRightPressed: picker.step(1)
                onClicked: picker.picked(modelData.value)
                contentItem: EXText {
                    id: label
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    text: pill.text
                    font: EXFont.text(13.5, 700)
                    color: pill.isSelected ? EX.onPrimary : EX.ink
                }
                FocusRing { control: pill }
            }
        }
    }
}
