#include "sampling/fan_reader.h"

#include <algorithm>

#include <fmt/format.h>

namespace embrix {

namespace {

// The most that the one byte can say in which controllers keep the number of fans. More, or less
// than none, is no count.
constexpr double kMostFans = 255;

}  // namespace

std::vector<FanReader::Fan> FanReader::read() {
  std::vector<Fan> fans;
  if (!isOpen_) return fans;
  if (!fanCount_) {
    const double count = value("FNum").value_or(0);
    fanCount_ = count >= 0 && count <= kMostFans ? static_cast<int>(count) : 0;
  }
  for (int i = 0; i < *fanCount_; ++i) {
    const auto rpm = value(fmt::format("F{}Ac", i));
    if (!rpm) continue;
    const auto maximum = value(fmt::format("F{}Mx", i));
    // In this order of arguments a zero has no sign.
    fans.push_back({.rpm = std::max(0.0, *rpm), .maxRPM = std::max(0.0, maximum.value_or(0))});
  }
  return fans;
}

std::optional<double> FanReader::value(std::string_view key) {
  const std::uint32_t code = fourCC(key);
  const auto keyInfo = info(code);
  if (!keyInfo) return std::nullopt;
  const auto answer = exchange({.key = code, .dataSize = keyInfo->size, .command = kSmcReadValue});
  return answer ? smcValue(keyInfo->type, answer->value(keyInfo->size)) : std::nullopt;
}

std::optional<FanReader::KeyInfo> FanReader::info(std::uint32_t key) {
  if (const auto known = infoCache_.find(key); known != infoCache_.end()) return known->second;
  const auto answer = exchange({.key = key, .command = kSmcReadKeyInfo});
  if (!answer) return std::nullopt;
  return infoCache_[key] = {.size = answer->dataSize, .type = answer->dataType};
}

std::optional<Packet> FanReader::exchange(const Packet& question) {
  SmcPacketBytes output{};
  if (!source_.call(question.encode(), output)) return std::nullopt;
  const Packet answer = Packet::decode(output);
  return answer.result == 0 ? std::optional(answer) : std::nullopt;
}

}  // namespace embrix
