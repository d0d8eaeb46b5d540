import QtQuick
import Embrix

// What a click on the flame opens: how the machine is, what causes it, what was left running, what
// keeps it awake, which servers run, and the way to the dashboard.
FocusScope {
    id: panel

    required property var viewModel
    // How high it may be; what is higher scrolls.
    property real maximumHeight: Infinity

    implicitWidth: 380
    implicitHeight: Math.min(column.height + 28, maximumHeight)
    focus: true
    Keys.onEscapePressed: viewModel.dismiss()
    Accessible.role: Accessible.Pane
    Accessible.name: "Embrix"

    // What the keyboard reaches is seen, also where the panel scrolls.
    readonly property Item reached: Window.activeFocusItem
    onReachedChanged: {
        let within = reached;
        while (within !== null && within !== column)
            within = within.parent;
        if (within === null)
            return;
        const gap = 10;
        const top = reached.mapToItem(scroll.contentItem, 0, 0).y - gap;
        const lowest = Math.max(0, scroll.contentHeight - scroll.height);
        const below = top + reached.height + 2 * gap - scroll.height;
        scroll.contentY = Math.min(lowest, Math.max(0, Math.min(top, Math.max(below, scroll.contentY))));
    }

    Rectangle {
        anchors.fill: parent
        color: EX.ground
    }
    Flickable {
        id: scroll
        anchors.fill: parent
        contentHeight: column.height + 28
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        clip: interactive
        // Nothing behind a question can be clicked or reached by the keyboard.
        enabled: !question.blocks

        Column {
            id: column
            x: 14
            y: 14
            width: panel.width - 28
            spacing: 12

            Hero {
                width: parent.width
                viewModel: panel.viewModel
            }
            FactsRow {
                width: parent.width
                viewModel: panel.viewModel
            }
            LeftRunningCard {
                width: parent.width
                viewModel: panel.viewModel
                overlay: floats
            }
            AwakeCard {
                width: parent.width
                viewModel: panel.viewModel
                visible: rowCount > 0
            }
            ServersCard {
                width: parent.width
                viewModel: panel.viewModel
                visible: panel.viewModel.servers !== null
            }
            PopoverFooter {
                width: parent.width
                viewModel: panel.viewModel
            }
        }
    }
    Item {
        id: floats
        anchors.fill: parent
    }
    ConfirmationOverlay {
        id: question
        anchors.fill: parent
        confirmation: panel.viewModel.confirmation
    }
    Shortcut {
        sequences: ["Ctrl+O"]
        enabled: scroll.enabled
        onActivated: panel.viewModel.open("overview")
    }
    Shortcut {
        sequences: ["Ctrl+,"]
        enabled: scroll.enabled
        onActivated: panel.viewModel.chooseSetting("settings")
    }
    Shortcut {
        sequences: ["Ctrl+Q"]
        enabled: scroll.enabled
        onActivated: panel.viewModel.chooseSetting("quit")
    }
}
