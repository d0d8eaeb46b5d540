import QtQuick
import Embrix

// The mascot in a square of `size`, as it appears, is pointed at and clicked.
Item {
    id: mascot

    property real size: 104
    property alias mood: item.mood
    property alias line: item.line
    property alias animated: item.animated
    property alias relief: item.relief
    property alias steaming: item.steaming
    property alias frozenAt: item.frozenAt
    property alias frozenState: item.frozenState
    // The pointer, in the coordinates of `gazeArea`; null while it is elsewhere.
    property var gaze: null
    property Item gazeArea: mascot

    width: size
    height: size
    opacity: Math.min(Math.max(appear.value, 0), 1)
    scale: 0.6 + 0.4 * appear.value
    Accessible.ignored: true

    SpringValue {
        id: appear
        from: 0
        target: 1
        response: 0.55
        damping: 0.55
        delay: 0.05
    }
    MascotItem {
        id: item
        x: -inset
        y: -inset
        figure: mascot.size
        gaze: mascot.gaze === null ? null : mapFromItem(mascot.gazeArea, mascot.gaze)
    }
    HoverHandler { onHoveredChanged: item.hover(hovered) }
    TapHandler { onTapped: item.tap() }
}
