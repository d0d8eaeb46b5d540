import QtQuick
import QtQuick.Templates as T
import Embrix

// The dev servers that run, and how many tools besides.
Card {
    id: card

    required property var viewModel
    readonly property var content: viewModel.servers

    objectName: "servers"
    spacing: 10

    Item {
        width: parent.width
        height: 22
        EXText {
            anchors.verticalCenter: parent.verticalCenter
            text: "Servers"
            font: EXFont.text(16, 600)
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        T.AbstractButton {
            id: tools
            objectName: "tools"
            visible: card.content !== null && card.content.tools !== null
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            implicitWidth: toolsRow.width
            implicitHeight: 26
            focusPolicy: Qt.StrongFocus
            text: card.content !== null ? card.content.tools ?? "" : ""
            opacity: down ? 0.7 : 1
            Keys.onReturnPressed: clicked()
            Keys.onEnterPressed: clicked()
            onClicked: card.viewModel.open("servers")
            contentItem: Item {
                Row {
                    id: toolsRow
                    anchors.verticalCenter: parent.verticalCenter
                    spacing: 3
                    EXText {
                        text: tools.text
                        font: EXFont.text(13, 500)
                        color: EX.muted
                    }
                    SymbolImage {
                        anchors.verticalCenter: parent.verticalCenter
                        name: "chevron.right"
                        size: 11
                        color: EX.muted
                    }
                }
            }
            FocusRing { control: tools; anchors.margins: -4 }
        }
    }
    EXText {
        visible: card.content !== null && card.content.hasNone
        width: parent.width
        text: "No dev servers running."
        font: EXFont.text(13, 500)
        color: EX.muted
    }
    Grid {
        visible: tiles.count > 0
        columns: 2
        spacing: 10
        Repeater {
            id: tiles
            model: card.viewModel.serverTiles
            ServerTile {
                width: (card.width - 2 * card.horizontalPadding - 10) / 2
                viewModel: card.viewModel
            }
        }
    }
    LinkButton {
        objectName: "servers-more"
        visible: card.content !== null && card.content.more !== null
        text: card.content !== null ? card.content.more ?? "" : ""
        onClicked: card.viewModel.open("servers")
    }
}
