import QtQuick
import QtQuick.Templates as T
import Embrix

// The button of all surfaces, in one of four kinds: "push" in `fill` with the pop look, "primary",
// "ghost" and "soft".
T.Button {
    id: button

    property string kind: "push"
    property color fill: EX.mint
    property color textColor: kind === "push" ? EX.inkFixed : kind === "primary" ? EX.onPrimary : EX.ink
    property real fontSize: 14
    property string help: ""
    // Else Return goes on to whoever is around the button.
    property bool returnClicks: true

    function pressReturn(event) {
        event.accepted = returnClicks;
        if (returnClicks)
            clicked();
    }

    // How far the face is lifted, and how far pressed in.
    readonly property real lift: hovered && enabled && kind === "push" ? 1 : 0
    property real press: down ? 1 : 0
    Behavior on press {
        enabled: !Motion.still
        NumberAnimation {
            duration: button.down ? 60 : Motion.springTime(0.3, 0.42)
            easing: button.down ? Motion.easeOut : Motion.spring(0.3, 0.42)
        }
    }

    implicitWidth: Math.ceil(label.implicitWidth) + 2 * horizontalPadding
    implicitHeight: 40
    horizontalPadding: 18
    verticalPadding: 0
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    opacity: enabled ? 1 : 0.45
    scale: 1 - 0.06 * press
    transformOrigin: Item.Bottom
    Accessible.name: text
    Accessible.description: help
    Keys.onReturnPressed: event => pressReturn(event)
    Keys.onEnterPressed: event => pressReturn(event)

    background: Item {
        Pop {
            width: parent.width
            height: parent.height
            y: button.kind === "push" ? 2 * button.press - button.lift : 0
            radius: height / 2
            outlined: button.kind === "push"
            shadow: button.kind !== "push" ? 0 : (button.lift > 0 ? 5 : 3) - 2 * button.press
            color: {
                switch (button.kind) {
                case "push": return button.fill;
                case "primary": return EX.primaryFill;
                case "soft": return EX.well;
                default: return "transparent";
                }
            }
            opacity: button.kind === "primary" && button.down ? 0.85 : 1
            Behavior on y { EaseOut { milliseconds: 120 } }
            Behavior on shadow { EaseOut { milliseconds: 120 } }
        }
        FocusRing { control: button }
    }
    contentItem: EXText {
        id: label
        y: 0
        text: button.text
        font: EXFont.text(button.fontSize, 700)
        color: button.textColor
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        transform: Translate { y: button.kind === "push" ? 2 * button.press - button.lift : 0 }
    }
    HelpTip { text: button.help; shown: button.hovered || button.visualFocus }
}
