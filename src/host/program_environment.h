// What a program that is run for its output gets for an environment: this process's own, less what
// says how wide and high a terminal is. Some programs, `ps` among them, cut their lines to that
// width even where they write to a pipe.
#pragma once

#include <vector>

namespace embrix {

// `environment` ends in a null pointer, and so does the result, which points into it. Any thread.
std::vector<char*> programEnvironment(char* const* environment);

}  // namespace embrix
