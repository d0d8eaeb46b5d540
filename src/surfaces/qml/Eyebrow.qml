import QtQuick
import Embrix

// A short text in small spaced capitals.
EXText {
    property real size: 12

    font: EXFont.eyebrow(size)
}
