import QtQuick
import QtQuick.Templates as T
import Embrix

// The help text of a control, after the pointer or the keyboard has rested on it for a while.
T.ToolTip {
    id: tip

    property bool shown: false
    // Who has pressed the control knows what it does, and looks at what that has opened.
    property bool isDone: false
    onShownChanged: if (!shown) isDone = false

    objectName: "help"
    visible: shown && !isDone && text !== ""
    delay: 700
    x: parent ? Math.round((parent.width - implicitWidth) / 2) : 0
    y: -implicitHeight - 6
    margins: 6
    padding: 8
    implicitWidth: Math.min(label.implicitWidth, 300) + 2 * padding
    implicitHeight: label.implicitHeight + 2 * padding
    closePolicy: T.Popup.NoAutoClose

    background: Rectangle {
        radius: 8
        color: EX.primaryFill
    }
    contentItem: EXText {
        id: label
        text: tip.text
        font: EXFont.text(12, 500)
        color: EX.onPrimary
        wrapMode: Text.Wrap
        elide: Text.ElideNone
    }

    Connections {
        target: tip.parent
        ignoreUnknownSignals: true
        function onPressedChanged() {
            if (tip.parent.pressed)
                tip.isDone = true;
        }
    }
}
