import QtQuick
import Embrix

// What was left running, the heaviest first.
Card {
    id: card

    required property var viewModel
    // What floats away over everything.
    required property Item overlay
    readonly property var content: viewModel.leftRunning
    readonly property bool isEmpty: content.freeUp === null

    objectName: "left-running"
    horizontalPadding: 16
    verticalPadding: 14
    spacing: 8

    EXText {
        width: parent.width
        text: "Left running"
        font: EXFont.text(16, 600)
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Row {
        visible: card.isEmpty
        width: parent.width
        spacing: 12
        Mascot {
            size: 48
            line: 5
        }
        Column {
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2
            EXText {
                text: "All clear!"
                font: EXFont.text(16, 600)
            }
            EXText {
                text: "Nothing forgotten is holding memory."
                font: EXFont.text(13, 500)
                color: EX.secondary
            }
        }
    }
    ListView {
        id: list
        x: -8
        width: parent.width + 16
        visible: count > 0
        interactive: false
        model: card.viewModel.leftRunningRows
        delegate: LeftRunningRow {
            width: list.width
            viewModel: card.viewModel
        }
        remove: Motion.still ? null : leaving
        displaced: Motion.still ? null : closingUp
        move: displaced
        property int countBefore: 0
        property bool isClosingUp: false
        onCountChanged: {
            isClosingUp = !Motion.still && count < countBefore;
            countBefore = count;
        }
        onContentHeightChanged: {
            following.stop();
            if (isClosingUp && contentHeight < height) {
                following.to = contentHeight;
                following.start();
            } else {
                height = contentHeight;
            }
        }
    }
    // What stands below follows the rows that close up.
    NumberAnimation {
        id: following
        target: list
        property: "height"
        duration: Motion.springTime(0.45, 0.8)
        easing: Motion.spring(0.45, 0.8)
    }
    // A row leaves towards the trailing side, and the others close up.
    Transition {
        id: leaving
        NumberAnimation {
            property: "x"
            to: 120
            duration: Motion.springTime(0.45, 0.8)
            easing: Motion.spring(0.45, 0.8)
        }
        NumberAnimation {
            property: "opacity"
            to: 0
            duration: Motion.time(200)
            easing: Motion.easeOut
        }
    }
    Transition {
        id: closingUp
        NumberAnimation {
            property: "y"
            duration: Motion.springTime(0.45, 0.8)
            easing: Motion.spring(0.45, 0.8)
        }
    }
    LinkButton {
        objectName: "left-running-more"
        visible: card.content.more !== null
        text: card.content.more ?? ""
        onClicked: card.viewModel.open("running")
    }
    EXButton {
        objectName: "free-up"
        visible: !card.isEmpty
        expands: true
        height: 50
        fill: EX.coral
        fontSize: 15.5
        text: card.content.freeUp ?? ""
        onClicked: card.viewModel.askToStopAll()
    }
    // Room for the button's shadow.
    Item {
        visible: !card.isEmpty
        width: 1
        height: 1
    }

    Connections {
        target: card.viewModel
        function onFloatAway(row, text) {
            if (Motion.still)
                return;
            for (let i = 0; i < list.count; ++i) {
                const item = list.itemAtIndex(i);
                if (item === null || item.content.id !== row)
                    continue;
                const place = card.overlay.mapFromItem(item, item.width - 110, 8);
                floatAway.createObject(card.overlay, { x: place.x, y: place.y, text: text });
            }
        }
    }
    Component {
        id: floatAway
        FloatAway { objectName: "float-away" }
    }
}
