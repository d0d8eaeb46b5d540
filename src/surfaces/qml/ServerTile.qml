import QtQuick
import QtQuick.Templates as T
import Embrix

// One dev server; a click opens it.
StaggeredAppear {
    id: stage

    required property var content
    required index
    property var viewModel

    implicitHeight: tile.implicitHeight + 3
    smallest: 0.8

    T.AbstractButton {
        id: tile

        property real lift: hovered ? 1 : 0
        Behavior on lift { EaseOut { milliseconds: 120 } }

        objectName: "server-" + stage.content.id
        width: stage.width
        implicitHeight: 92
        focusPolicy: Qt.StrongFocus
        hoverEnabled: true
        Accessible.name: stage.content.name + " " + stage.content.port
        Accessible.description: stage.content.help
        Keys.onReturnPressed: clicked()
        Keys.onEnterPressed: clicked()
        Keys.onMenuPressed: menu.present(tile, 20, 20)
        onClicked: stage.viewModel.openServer(stage.content.id)

        background: Item {
            Pop {
                width: parent.width
                height: parent.height
                y: -tile.lift
                radius: 18
                shadow: 3 + 2 * tile.lift
                color: EX[stage.content.fill]
            }
            FocusRing { control: tile; radius: 20 }
        }
        contentItem: Item {
            transform: Translate { y: -tile.lift }
            Item {
                id: ring
                visible: stage.content.isNew
                anchors.right: parent.right
                anchors.rightMargin: 14
                y: 14
                width: visible ? 10 : 0
                height: 10
                Rectangle {
                    anchors.fill: parent
                    radius: 5
                    color: EX.inkFixed
                }
                PulseRing {
                    anchors.fill: parent
                    growth: 2.2
                    color: EX.inkFixed
                }
            }
            EXText {
                x: 12
                y: 9
                width: parent.width - 24 - (ring.visible ? 18 : 0)
                text: stage.content.name
                font: EXFont.text(13, 700)
                color: EX.inkFixed
            }
            EXText {
                x: 12
                y: 26
                width: parent.width - 24
                text: stage.content.port
                font: EXFont.display(26, 700, -1.04)
                color: EX.inkFixed
                fontSizeMode: Text.HorizontalFit
                minimumPointSize: 10
                elide: Text.ElideNone
            }
            EXText {
                x: 12
                y: 65
                width: parent.width - 44
                text: stage.content.age
                font: EXFont.text(11.5, 700)
                color: EX.inkFixed
            }
            Rectangle {
                anchors.right: parent.right
                anchors.rightMargin: 10
                y: 62
                width: 20
                height: 20
                radius: 10
                color: "transparent"
                border.width: tile.hovered ? 2 : 0
                border.color: "white"
                SymbolImage {
                    anchors.centerIn: parent
                    name: "arrow.up.right"
                    size: 13
                    weight: 1.6
                    color: EX.inkFixed
                }
            }
        }
        TapHandler {
            acceptedButtons: Qt.RightButton
            onTapped: eventPoint => menu.present(tile, eventPoint.position.x, eventPoint.position.y)
        }
        HelpTip { text: stage.content.help; shown: tile.hovered || tile.visualFocus }
        EXMenu {
            id: menu
            objectName: "menu-of-" + stage.content.id
            items: stage.content.menu
            onChosen: action => stage.viewModel.chooseForServer(stage.content.id, action)
        }
    }
}
