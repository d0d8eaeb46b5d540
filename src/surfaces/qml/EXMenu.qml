import QtQuick
import QtQuick.Templates as T
import Embrix

// A menu made of the items that a view-model gives, in their order.
T.Menu {
    id: menu

    property var items: []
    signal chosen(string action)

    // Where the keyboard was before, and whether it had led there.
    property Item asker: null
    property bool wasReached: false

    // At that place of the item. Its lines are made now, and stay as they are while it is open,
    // however often the machine behind them changes.
    function present(item, x, y) {
        prepare(item);
        popup(item, x, y);
    }
    // Above the item, to its right edge.
    function presentAbove(item) {
        prepare(item);
        popup(item, item.width - implicitWidth, -implicitHeight - 6);
    }

    function prepare(item) {
        asker = item.Window.activeFocusItem;
        wasReached = asker !== null && asker.visualFocus === true;
        rebuild();
    }
    // The toolkit gives the keyboard back to whoever had it, but not to the panel around.
    onClosed: {
        if (asker === null)
            return;
        const reached = asker.Window.activeFocusItem;
        if (reached === null || reached === asker.Window.contentItem)
            asker.forceActiveFocus(wasReached ? Qt.TabFocusReason : Qt.PopupFocusReason);
        asker = null;
    }

    function rebuild() {
        while (count > 0) {
            const nested = menuAt(0);
            if (nested !== null)
                removeMenu(nested);
            else
                removeItem(itemAt(0));
        }
        for (const item of items) {
            if (item.items.length > 0) {
                const nested = Qt.createComponent("EXMenu.qml").createObject(menu, { title: item.label, items: item.items });
                nested.rebuild();
                nested.chosen.connect(menu.chosen);
                addMenu(nested);
            } else if (item.action === "") {
                addItem(divider.createObject(contentItem));
            } else {
                addItem(line.createObject(contentItem, { item: item }));
            }
        }
        contentItem.forceLayout();
    }

    implicitWidth: Math.min(Math.max(180, contentItem.implicitWidth), 320) + leftPadding + rightPadding
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    margins: 4
    padding: 6
    overlap: 4
    cascade: true
    delegate: EXMenuItem {}

    background: Rectangle {
        radius: 12
        color: EX.surface
        border.width: 2
        border.color: EX.inkFixed
    }
    contentItem: ListView {
        // Known before anything is laid out, as it says where the menu goes.
        implicitHeight: {
            let sum = 0;
            for (let i = 0; i < menu.count; ++i)
                sum += menu.itemAt(i).implicitHeight;
            return sum;
        }
        // The widest line counts.
        implicitWidth: {
            let widest = 0;
            for (let i = 0; i < menu.count; ++i)
                widest = Math.max(widest, menu.itemAt(i).implicitWidth);
            return widest;
        }
        model: menu.contentModel
        interactive: false
        currentIndex: menu.currentIndex
    }

    Component {
        id: line
        EXMenuItem {
            property var item
            objectName: "menu-" + item.action
            text: item.label
            shortcutText: item.shortcut
            checkable: item.isOn !== null
            checked: item.isOn === true
            onTriggered: menu.chosen(item.action)
        }
    }
    Component {
        id: divider
        T.MenuSeparator {
            implicitWidth: 40
            implicitHeight: 9
            contentItem: Item {
                Rectangle {
                    anchors.verticalCenter: parent.verticalCenter
                    width: parent.width
                    height: 1
                    color: EX.hairline
                }
            }
        }
    }
}
