import QtQuick
import Embrix

// How the machine is right now.
Pop {
    id: hero

    required property var viewModel
    readonly property var content: viewModel.hero

    objectName: "hero"
    implicitHeight: column.y + column.height + 18
    radius: 24
    shadow: 4
    color: EX[content.fill]
    Behavior on color {
        ColorAnimation {
            duration: Motion.springTime(1, 1)
            easing: Motion.spring(1, 1)
        }
    }
    HoverHandler { id: pointer }

    Mascot {
        x: hero.width - width - 10
        y: 10
        size: 104
        line: 4
        mood: hero.content.mood
        relief: hero.content.relief
        steaming: hero.content.isHot
        gaze: pointer.hovered ? pointer.point.position : null
        gazeArea: hero
    }
    Column {
        id: column
        x: 18
        y: 16
        width: hero.width - 36

        Eyebrow {
            width: figures.width
            text: hero.content.eyebrow
            color: EX.inkFixed
        }
        Item {
            id: figures
            // Beside the mascot.
            width: column.width - 104
            height: 64
            CountUp {
                id: figure
                objectName: "hero-watts"
                anchors.baseline: parent.bottom
                anchors.baselineOffset: -12
                value: hero.content.watts
                format: hero.viewModel.figure
                font: EXFont.display(58, 700, -2.32)
                color: EX.inkFixed
                // Four digits are made to fit rather than cut.
                width: Math.min(implicitWidth, figures.width - unit.width - 5)
                fontSizeMode: Text.HorizontalFit
                minimumPointSize: 12
            }
            EXText {
                id: unit
                anchors.left: figure.right
                anchors.leftMargin: 5
                anchors.baseline: figure.baseline
                text: hero.content.unit
                font: EXFont.display(26, 700, -0.52)
                color: EX.inkFixed
            }
        }
        Item { width: 1; height: 4 }
        EXText {
            objectName: "hero-status"
            width: figures.width
            text: hero.content.status
            font: EXFont.text(16, 700)
            color: EX.inkFixed
        }
        Item { width: 1; height: 8 }
        EXText {
            objectName: "hero-explanation"
            width: column.width
            text: hero.content.explanation
            font: EXFont.text(13.5, 500)
            color: EX.inkFixed
            wrapMode: Text.Wrap
            maximumLineCount: 3
        }
        Item {
            width: 1
            height: 12
            visible: culprit.visible
        }
        EXButton {
            id: culprit
            objectName: "culprit"
            visible: hero.content.culprit !== null
            expands: true
            height: 42
            fill: "white"
            fontSize: 14
            text: hero.content.culprit ? hero.content.culprit.label : ""
            help: hero.content.culprit ? hero.content.culprit.help : ""
            onClicked: hero.viewModel.calmOrRestoreCulprit()
            Keys.onMenuPressed: menu.present(culprit, 0, height)

            TapHandler {
                acceptedButtons: Qt.RightButton
                onTapped: eventPoint => menu.present(culprit, eventPoint.position.x, eventPoint.position.y)
            }
            EXMenu {
                id: menu
                objectName: "culprit-menu"
                items: hero.content.culprit ? hero.content.culprit.menu : []
                onChosen: action => hero.viewModel.chooseForCulprit(action)
            }
        }
        Item {
            width: 1
            height: 3
            visible: culprit.visible
        }
    }
}
