import QtQuick
import Embrix

// What keeps the machine awake without being at work.
Card {
    id: card

    required property var viewModel
    readonly property int rowCount: rows.count

    objectName: "awake"
    verticalPadding: 14
    spacing: 4

    EXText {
        width: parent.width
        text: "Keeping it awake"
        font: EXFont.text(16, 600)
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Repeater {
        id: rows
        model: card.viewModel.awakeRows
        Item {
            id: row
            required property var content
            width: parent.width
            height: 52
            KindTile {
                id: tile
                anchors.verticalCenter: parent.verticalCenter
                symbol: "moon.zzz"
                color: EX.lavender
            }
            EXText {
                anchors.left: tile.right
                anchors.leftMargin: 10
                anchors.right: stop.left
                anchors.rightMargin: 8
                y: 8
                text: row.content.name
                font: EXFont.text(14.5, 700)
            }
            EXText {
                anchors.left: tile.right
                anchors.leftMargin: 10
                anchors.right: stop.left
                anchors.rightMargin: 8
                y: 28
                text: row.content.detail
                font: EXFont.text(12.5, 400)
                color: EX.muted
            }
            EXButton {
                id: stop
                objectName: "stop-blocker-" + row.content.id
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                height: 32
                kind: "soft"
                fontSize: 13
                text: "Stop"
                Accessible.name: "Stop " + row.content.name
                onClicked: card.viewModel.askToStopBlocker(row.content.id)
            }
        }
    }
}
