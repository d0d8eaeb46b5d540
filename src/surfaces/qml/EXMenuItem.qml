import QtQuick
import QtQuick.Templates as T
import Embrix

// One line of a menu.
T.MenuItem {
    id: item

    property string shortcutText: ""

    implicitWidth: mark.width + Math.ceil(label.implicitWidth) + Math.ceil(keys.implicitWidth) + 44
    implicitHeight: 30
    Accessible.name: text

    // Written as the platform writes it; whoever owns the menu listens for the keys.
    Shortcut {
        id: written
        enabled: false
        sequence: item.shortcutText
    }
    background: Rectangle {
        radius: 8
        color: item.highlighted ? EX.rowHover : "transparent"
    }
    contentItem: Item {
        Item {
            id: mark
            x: 8
            width: item.checkable ? 18 : 0
            height: parent.height
            SymbolImage {
                anchors.verticalCenter: parent.verticalCenter
                size: 13
                name: "checkmark"
                color: EX.ink
                visible: item.checked
            }
        }
        EXText {
            id: label
            x: mark.x + mark.width
            width: keys.x - x - (item.subMenu !== null ? 16 : 8)
            height: parent.height
            verticalAlignment: Text.AlignVCenter
            text: item.text
            font: EXFont.text(13.5, 500)
            color: item.enabled ? EX.ink : EX.muted
        }
        EXText {
            id: keys
            anchors.right: parent.right
            anchors.rightMargin: 10
            height: parent.height
            verticalAlignment: Text.AlignVCenter
            text: item.shortcutText !== "" ? written.nativeText : ""
            font: EXFont.text(12.5, 400)
            color: EX.muted
        }
    }
    arrow: SymbolImage {
        x: item.width - width - 8
        y: (item.height - height) / 2
        size: 12
        name: "chevron.right"
        color: EX.muted
        visible: item.subMenu !== null
    }
}
