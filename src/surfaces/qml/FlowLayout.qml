import QtQuick

// Children from left to right, and on to a new line where the next one would not fit.
Flow {
    spacing: 8
}
