import QtQuick
import Embrix

// A text of a surface: its ends stay within its item.
Text {
    color: EX.ink
    elide: Text.ElideRight
    textFormat: Text.PlainText
    renderType: Text.QtRendering
}
