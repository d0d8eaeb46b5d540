import QtQuick
import QtQuick.Templates as T
import Embrix

// A row that is lit under the pointer and can be clicked as a whole.
T.AbstractButton {
    id: row

    property real radius: 14
    signal menuAsked(point position)

    padding: 8
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    Keys.onMenuPressed: menuAsked(Qt.point(width / 2, height / 2))

    background: Rectangle {
        radius: row.radius
        color: row.hovered ? EX.rowHover : "transparent"
        FocusRing { control: row; radius: row.radius; anchors.margins: 0 }
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: eventPoint => row.menuAsked(eventPoint.position)
    }
}
