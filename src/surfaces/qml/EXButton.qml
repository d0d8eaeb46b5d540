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

    // As wide as what it stands in.
    property bool expands: false

    // How far the face is lifted, and how far pressed in.
    property real lift: hovered && enabled && kind === "push" ? 1 : 0
    Behavior on lift { EaseOut { milliseconds: 120 } }
    property real press: 0
    onDownChanged: {
        (down ? releasing : pressing).stop();
        (down ? pressing : releasing).start();
    }
    EaseOut {
        id: pressing
        target: button
        property: "press"
        to: 1
        milliseconds: 60
    }
    NumberAnimation {
        id: releasing
        target: button
        property: "press"
        to: 0
        duration: Motion.springTime(0.3, 0.42)
        easing: Motion.spring(0.3, 0.42)
    }

    implicitWidth: Math.ceil(label.implicitWidth) + 2 * horizontalPadding
    implicitHeight: 40
    width: expands && parent !== null ? parent.width : implicitWidth
    horizontalPadding: 18
    verticalPadding: 0
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    // Faint when it is off by itself, not while all around it waits for an answer.
    opacity: enabled || !parent?.enabled ? 1 : 0.45
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
            shadow: button.kind !== "push" ? 0 : 3 + 2 * button.lift - 2 * button.press
            color: {
                switch (button.kind) {
                case "push": return button.fill;
                case "primary": return EX.primaryFill;
                case "soft": return EX.well;
                default: return "transparent";
                }
            }
            opacity: button.kind === "primary" && button.down ? 0.85 : 1
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
