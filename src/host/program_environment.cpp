#include "host/program_environment.h"

#include <string_view>

namespace embrix {

std::vector<char*> programEnvironment(char* const* environment) {
  std::vector<char*> kept;
  for (char* const* variable = environment; *variable != nullptr; ++variable) {
    const std::string_view text = *variable;
    if (text.starts_with("COLUMNS=") || text.starts_with("LINES=")) continue;
    kept.push_back(*variable);
  }
  kept.push_back(nullptr);
  return kept;
}

}  // namespace embrix
