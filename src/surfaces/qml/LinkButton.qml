import QtQuick
import QtQuick.Templates as T
import Embrix

// A plain underlined text that can be clicked.
T.Button {
    id: button

    implicitWidth: Math.ceil(label.implicitWidth)
    implicitHeight: Math.ceil(label.implicitHeight)
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    opacity: down ? 0.7 : 1
    Accessible.name: text
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    background: Item { FocusRing { control: button; anchors.margins: -4 } }
    contentItem: EXText {
        id: label
        text: button.text
        font: EXFont.underlined(13, 500)
        color: EX.muted
    }
}
