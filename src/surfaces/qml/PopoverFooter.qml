import QtQuick
import Embrix

// The way to the dashboard, and the program's own menu.
Item {
    id: footer

    required property var viewModel

    implicitHeight: 4 + open.height + 3

    EXButton {
        id: open
        objectName: "open-embrix"
        y: 4
        width: parent.width - settings.width - 10
        height: 48
        fill: EX.lavender
        fontSize: 14.5
        text: "Open Embrix"
        onClicked: footer.viewModel.open("overview")
    }
    CircleButton {
        id: settings
        objectName: "settings-menu"
        y: 4
        anchors.right: parent.right
        width: 48
        height: 48
        fill: EX.surface
        symbol: "slider.horizontal.3"
        symbolSize: 16
        symbolWeight: 1.35
        help: "Settings and Quit"
        onClicked: menu.presentAbove(settings)

        EXMenu {
            id: menu
            objectName: "settings-items"
            items: footer.viewModel.settingsMenu
            onChosen: action => footer.viewModel.chooseSetting(action)
        }
    }
}
