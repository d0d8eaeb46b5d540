import QtQuick
import QtQuick.Templates as T
import Embrix

// Battery, temperature and fans; a second line where they do not fit into one.
FlowLayout {
    id: row

    required property var viewModel
    readonly property var content: viewModel.facts

    // All facts in a slightly smaller size rather than one of them alone on a second line.
    readonly property real fontSize: {
        const shown = [battery.visible ? batteryPill : null, temperature.visible ? temperature : null, fans].filter(pill => pill !== null);
        const words = shown.reduce((sum, pill) => sum + pill.textWidth, 0);
        const rest = shown.reduce((sum, pill) => sum + pill.extraWidth, (shown.length - 1) * spacing);
        return Math.max(12, Math.min(13.5, 13.5 * (width - rest) / words));
    }

    spacing: 6

    T.AbstractButton {
        id: battery
        objectName: "fact-battery"
        visible: row.content.battery !== null
        implicitWidth: contentItem.width
        implicitHeight: 40
        focusPolicy: Qt.StrongFocus
        hoverEnabled: true
        opacity: down ? 0.8 : 1
        Accessible.name: "Battery details"
        Accessible.description: row.content.battery ? row.content.battery.text : ""
        Keys.onReturnPressed: clicked()
        Keys.onEnterPressed: clicked()
        onClicked: row.viewModel.open("battery")

        contentItem: FactPill {
            id: batteryPill
            fontSize: row.fontSize
            text: row.content.battery ? row.content.battery.text : ""
            leading: BatteryGlyph {
                anchors.verticalCenter: parent.verticalCenter
                width: implicitWidth
                height: implicitHeight
                fraction: row.content.battery ? row.content.battery.fraction : 0
                color: EX.ink
            }
        }
        FocusRing { control: battery }
        HelpTip { text: "Battery details"; shown: battery.hovered || battery.visualFocus }
    }
    FactPill {
        id: temperature
        objectName: "fact-temperature"
        fontSize: row.fontSize
        visible: row.content.temperature !== null
        text: row.content.temperature ?? ""
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    FactPill {
        id: fans
        objectName: "fact-fans"
        fontSize: row.fontSize
        text: row.content.fans
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
