#pragma once

#include <string_view>

namespace embrix {

// Writes all of the text to the descriptor, waiting for whoever reads it. False when nobody does
// any more, when it cannot be written, and when a program that handles the signals to end in a loop
// (they are then blocked) is told to end while it waits: a reader that has stopped must not keep
// it.
bool writeWhole(int descriptor, std::string_view text);

}  // namespace embrix
