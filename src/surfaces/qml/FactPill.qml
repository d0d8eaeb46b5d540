import QtQuick
import Embrix

// One of the facts below the hero.
Rectangle {
    id: pill

    property alias text: label.text
    property alias leading: leading.data
    property real fontSize: 13.5
    // Of the text in its usual size, and of all that is not text.
    readonly property alias textWidth: measure.advanceWidth
    readonly property real extraWidth: leading.width + row.spacing + 28

    width: row.width + 28
    height: 40
    radius: height / 2
    color: EX.surface

    TextMetrics {
        id: measure
        font: EXFont.text(13.5, 700)
        text: label.text
    }
    Row {
        id: row
        x: 14
        height: parent.height
        spacing: leading.children.length > 0 ? 7 : 0
        Item {
            id: leading
            width: childrenRect.width
            height: parent.height
        }
        EXText {
            id: label
            height: parent.height
            verticalAlignment: Text.AlignVCenter
            font: EXFont.text(pill.fontSize, 700)
        }
    }
}
