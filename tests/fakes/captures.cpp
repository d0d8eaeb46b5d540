#include "fakes/captures.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace embrix {

std::string captureOr(std::string_view name, std::string_view handMade) {
  const char* folder = std::getenv("EMBRIX_CAPTURES");
  if (folder == nullptr || *folder == '\0') return std::string(handMade);
  const std::filesystem::path path = std::filesystem::path(folder) / name;
  std::ifstream file(path, std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (!file.is_open() || bytes.empty()) throw std::runtime_error("no capture: " + path.string());
  return bytes;
}

}  // namespace embrix
