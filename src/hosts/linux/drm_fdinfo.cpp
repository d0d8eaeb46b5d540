#include "hosts/linux/drm_fdinfo.h"

#include <charconv>

#include "hosts/linux/system_file.h"

namespace embrix {

namespace {

std::string_view withoutBlanks(std::string_view text) {
  const auto first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// A number with that unit behind it, or with none when the unit is empty.
std::optional<std::uint64_t> numberIn(std::string_view text, std::string_view unit) {
  std::uint64_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc()) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(result.ptr - text.data()));
  if (withoutBlanks(text) != unit) return std::nullopt;
  return number;
}

}  // namespace

std::optional<DrmClientUsage> parseDrmFdinfo(std::string_view text) {
  std::string_view device;
  std::string_view client;
  std::vector<std::optional<std::uint64_t>> cycles;
  DrmClientUsage usage;
  forEachPiece(text, '\n', [&](std::string_view line) {
    if (!line.starts_with("drm-")) return;
    const auto colon = line.find(':');
    if (colon == std::string_view::npos) return;
    const std::string_view key = line.substr(0, colon);
    const std::string_view value = withoutBlanks(line.substr(colon + 1));
    if (key == "drm-pdev") {
      device = value;
    } else if (key == "drm-client-id") {
      client = value;
    } else if (key.starts_with("drm-engine-capacity-")) {
      return;  // how many engines of the kind there are
    } else if (key.starts_with("drm-engine-")) {
      usage.engines.push_back(numberIn(value, "ns"));
    } else if (key.starts_with("drm-cycles-")) {
      cycles.push_back(numberIn(value, ""));
    }
  });
  if (client.empty()) return std::nullopt;
  if (usage.engines.empty()) usage.engines = std::move(cycles);
  usage.id.append(device).append("#").append(client);
  return usage;
}

}  // namespace embrix
