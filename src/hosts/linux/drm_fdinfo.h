// What the kernel says of one open handle on a graphics processor, in /proc/<pid>/fdinfo/<n> (the
// kernel's "DRM client usage stats"). Decodes text; opens nothing.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace embrix {

struct DrmClientUsage {
  // The device's address and the client's number: handles with equal ids are one client, however
  // many processes hold them.
  std::string id;
  // Time so far in each of its engines: nanoseconds, or the engine's own cycles where the driver
  // counts nothing else. An engine whose number does not fit is absent.
  std::vector<std::optional<std::uint64_t>> engines;

  bool operator==(const DrmClientUsage&) const = default;
};

// Absent when the text is of some other kind of file, or names no client.
std::optional<DrmClientUsage> parseDrmFdinfo(std::string_view text);

}  // namespace embrix
