// Captures of real machines, for tests that are given them. They are no part of the project: a test
// names one, holds an input of the same shape and figures beside it, and expects the same of both.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace embrix {

// The bytes of the capture of that name below the folder in the environment variable
// EMBRIX_CAPTURES; `handMade` when the variable is not set. Throws when it is set and the capture
// cannot be read: a capture that went missing must not look like a test that passed.
std::string captureOr(std::string_view name, std::string_view handMade);

struct Capture {
  std::string name;
  std::string bytes;
};

// Every capture in that folder below EMBRIX_CAPTURES, by name, also those that no test names: for
// what must hold of the captures of any machine. `handMade` when the variable is not set. Throws
// when it is set and there is none.
std::vector<Capture> capturesIn(std::string_view folder, std::vector<Capture> handMade);

}  // namespace embrix
