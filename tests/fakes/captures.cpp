#include "fakes/captures.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace embrix {

namespace {

// Empty when the tests are given none.
std::filesystem::path capturesFolder() {
  const char* folder = std::getenv("EMBRIX_CAPTURES");
  return folder == nullptr ? "" : folder;
}

std::string bytesOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (!file.is_open() || bytes.empty()) throw std::runtime_error("no capture: " + path.string());
  return bytes;
}

}  // namespace

std::string captureOr(std::string_view name, std::string_view handMade) {
  const auto folder = capturesFolder();
  return folder.empty() ? std::string(handMade) : bytesOf(folder / name);
}

std::vector<Capture> capturesIn(std::string_view folder, std::vector<Capture> handMade) {
  if (capturesFolder().empty()) return handMade;
  const auto path = capturesFolder() / folder;
  std::vector<Capture> captures;
  for (const auto& entry : std::filesystem::directory_iterator(path)) {
    if (entry.is_regular_file()) {
      captures.push_back({entry.path().filename().string(), bytesOf(entry.path())});
    }
  }
  if (captures.empty()) throw std::runtime_error("no captures: " + path.string());
  std::sort(captures.begin(), captures.end(),
            [](const Capture& a, const Capture& b) { return a.name < b.name; });
  return captures;
}

}  // namespace embrix
