// The fans' speeds, asked of the system management controller. Sampling thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "base/hash_map.h"
#include "darwin/smc_packet.h"
#include "frame/fan.h"
#include "host/smc_source.h"

namespace embrix {

class FanReader {
 public:
  using Fan = embrix::Fan;

  // What the controller tells of a key.
  struct KeyInfo {
    std::uint32_t size = 0;  // bytes of its value
    std::uint32_t type = 0;  // four-character code

    bool operator==(const KeyInfo&) const = default;
  };

  // `source` must outlive the reader.
  explicit FanReader(SmcSource& source) : source_(source), isOpen_(source.isOpen()) {}

  // One entry for each fan whose speed could be read, in the controller's order. Empty on a fanless
  // machine and on one without a controller.
  std::vector<Fan> read();

  // The number under the key, such as "F0Ac". Absent when the key is unknown, the call fails, or
  // its value is no finite number of a known type.
  std::optional<double> value(std::string_view key);

 private:
  std::optional<KeyInfo> info(std::uint32_t key);
  std::optional<Packet> exchange(const Packet& question);

  SmcSource& source_;
  bool isOpen_;
  HashMap<std::uint32_t, KeyInfo> infoCache_;  // failures are not kept
  std::optional<int> fanCount_;                // asked once
};

}  // namespace embrix
