import QtQuick
import Embrix

// One thing that was left running.
StaggeredAppear {
    id: stage

    required property var content
    required index
    property var viewModel

    implicitHeight: row.implicitHeight
    objectName: "left-running-row-" + content.id

    HoverRow {
        id: row
        width: stage.width
        opacity: stage.content.isStopping ? 0.5 : 1
        Accessible.name: stage.content.title
        Accessible.description: stage.content.detail + ", " + stage.content.memory
        onClicked: stage.viewModel.open("running")
        onMenuAsked: position => menu.present(row, position.x, position.y)
        Behavior on opacity { EaseOut { milliseconds: 200 } }

        contentItem: Item {
            implicitHeight: Math.max(38, detail.y + detail.height)
            KindTile {
                id: tile
                anchors.verticalCenter: parent.verticalCenter
                symbol: stage.content.symbol
                color: EX[stage.content.tile]
            }
            // What tells two devices apart often stands at the end: a second line for it.
            EXText {
                id: title
                anchors.left: tile.right
                anchors.leftMargin: 10
                anchors.right: memory.left
                anchors.rightMargin: 8
                y: 1
                text: stage.content.title
                font: EXFont.text(14.5, 700)
                wrapMode: Text.Wrap
                maximumLineCount: 2
            }
            EXText {
                id: detail
                anchors.left: tile.right
                anchors.leftMargin: 10
                anchors.right: memory.left
                anchors.rightMargin: 8
                y: title.y + title.height + 1
                text: stage.content.detail
                font: EXFont.text(12.5, 400)
                color: EX.muted
            }
            EXText {
                id: memory
                anchors.right: end.left
                anchors.rightMargin: 10
                anchors.verticalCenter: parent.verticalCenter
                text: stage.content.memory
                font: EXFont.digits(14, 700)
            }
            Item {
                id: end
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                width: 32
                height: 32
                Spinner {
                    anchors.centerIn: parent
                    visible: stage.content.isStopping
                }
                CircleButton {
                    objectName: "stop-" + stage.content.id
                    visible: stage.content.canStop && !stage.content.isStopping
                    symbol: "xmark"
                    symbolSize: 11
                    symbolWeight: 1.6
                    help: stage.content.stopHelp
                    onClicked: stage.viewModel.askToStopRow(stage.content.id)
                }
            }
        }
        EXMenu {
            id: menu
            objectName: "menu-of-" + stage.content.id
            items: stage.content.menu
            onChosen: action => stage.viewModel.chooseForRow(stage.content.id, action)
        }
    }
}
