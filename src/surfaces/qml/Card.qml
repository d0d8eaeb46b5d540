import QtQuick
import Embrix

// A plain rounded panel that is as high as what lies in it.
Rectangle {
    default property alias lines: column.data
    property alias spacing: column.spacing
    property real horizontalPadding: 16
    property real verticalPadding: 16

    implicitHeight: column.height + 2 * verticalPadding
    radius: 24
    color: EX.surface

    Column {
        id: column
        x: parent.horizontalPadding
        y: parent.verticalPadding
        width: parent.width - 2 * parent.horizontalPadding
    }
}
