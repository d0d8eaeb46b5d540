import QtQuick
import Embrix

// The question over a surface: Escape and a click beside the card say no, Return says yes.
FocusScope {
    id: overlay

    required property var confirmation
    readonly property bool isPending: confirmation.isPending
    // How much of it is there.
    property real presence: isPending ? 1 : 0
    Behavior on presence { EaseOut { milliseconds: 180 } }

    // Whoever is behind lets nothing through meanwhile.
    property bool blocks: false
    // Where the keyboard was before.
    property Item asker: null

    visible: presence > 0
    onIsPendingChanged: {
        if (isPending) {
            asker = Window.activeFocusItem;
            blocks = true;
            forceActiveFocus();
            return;
        }
        blocks = false;
        const goesBack = asker !== null && asker.visible && asker.enabled;
        focus = false;
        (goesBack ? asker : parent).forceActiveFocus(Qt.OtherFocusReason);
        asker = null;
    }
    Keys.onEscapePressed: confirmation.answer(false)
    Keys.onReturnPressed: confirmation.answer(true)
    Keys.onEnterPressed: confirmation.answer(true)
    Accessible.role: Accessible.Dialog
    Accessible.name: confirmation.question
    Accessible.description: confirmation.message

    Rectangle {
        anchors.fill: parent
        color: EX.inkFixed
        opacity: 0.4 * overlay.presence
        // Nothing below is hovered, wheeled or clicked.
        MouseArea {
            anchors.fill: parent
            hoverEnabled: true
            acceptedButtons: Qt.AllButtons
            onWheel: wheel => wheel.accepted = true
            onClicked: if (overlay.isPending) overlay.confirmation.answer(false)
        }
    }
    Pop {
        id: card
        objectName: "confirm-card"
        anchors.centerIn: parent
        width: Math.min(320, overlay.width - 40)
        height: column.height + 40
        radius: 24
        shadow: 6
        color: EX.surface
        opacity: overlay.presence
        scale: 0.9 + 0.1 * overlay.presence

        // A click on the card is no click beside it.
        MouseArea { anchors.fill: parent }

        Column {
            id: column
            x: 20
            y: 20
            width: parent.width - 40
            spacing: 8

            Mascot {
                size: 58
                line: 5
            }
            EXText {
                width: parent.width
                objectName: "confirm-question"
                text: overlay.confirmation.question
                font: EXFont.text(19, 700)
                wrapMode: Text.Wrap
                // Names come from outside; the answers stay in sight whatever they are.
                maximumLineCount: 4
            }
            EXText {
                visible: text !== ""
                width: parent.width
                text: overlay.confirmation.message
                font: EXFont.text(14.5, 500)
                color: EX.secondary
                wrapMode: Text.Wrap
                elide: Text.ElideNone
            }
            Item { width: 1; height: 2 }
            Row {
                width: parent.width
                spacing: 10
                EXButton {
                    objectName: "confirm-cancel"
                    width: (parent.width - 10) / 2
                    height: 44
                    kind: "soft"
                    text: "Cancel"
                    enabled: overlay.isPending
                    // Return means yes wherever the keyboard is; the space bar presses this.
                    returnClicks: false
                    onClicked: overlay.confirmation.answer(false)
                }
                EXButton {
                    objectName: "confirm-action"
                    width: (parent.width - 10) / 2
                    height: 44
                    fill: EX.coral
                    text: overlay.confirmation.actionTitle
                    enabled: overlay.isPending
                    onClicked: overlay.confirmation.answer(true)
                }
            }
        }
    }
}
