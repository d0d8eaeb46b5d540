#include "hosts/linux/smc_source.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>
#include <utility>

#include "darwin/smc_packet.h"

namespace embrix {

namespace {

constexpr std::size_t kMostFans = 10;
// What an embedded controller says that has no count, all its bits being set; and far above what
// any fan turns.
constexpr std::int64_t kNoSpeed = 65535;

// The controller's own result codes.
constexpr std::uint8_t kSuccess = 0;
constexpr std::uint8_t kKeyNotFound = 0x84;

// A float's bytes in the order in which the controller's link has them: little-endian, as memory
// is.
std::vector<std::uint8_t> floatBytes(std::int64_t number) {
  const auto value = static_cast<float>(number);
  std::vector<std::uint8_t> bytes(sizeof value);
  std::memcpy(bytes.data(), &value, sizeof value);
  return bytes;
}

// A letter of a four-character code, the first being 0.
char letter(std::uint32_t key, int place) {
  return static_cast<char>(key >> (24 - 8 * place));
}

bool isSpeed(std::optional<std::int64_t> number) {
  return number && *number >= 0 && *number < kNoSpeed;
}

}  // namespace

LinuxSmcSource::LinuxSmcSource(const std::string& root) {
  const std::string monitors = belowRoot(root, "/sys/class/hwmon");
  for (const std::string& name : namesIn(monitors)) addMonitor(monitors + "/" + name);
}

void LinuxSmcSource::addMonitor(const std::string& directory) {
  for (const std::string& name : namesIn(directory)) {
    constexpr std::string_view kInput = "_input";
    if (!name.starts_with("fan") || !name.ends_with(kInput)) continue;
    if (fans_.size() == kMostFans) return;
    const std::string stem = directory + "/" + name.substr(0, name.size() - kInput.size());
    const auto maximum = readInteger(stem + "_max");
    fans_.push_back({.speed = HeldFile(directory + "/" + name),
                     .powerState = HeldFile(directory + "/device/power/runtime_status"),
                     .maximum = isSpeed(maximum) && *maximum > 0 ? maximum : std::nullopt});
  }
}

std::optional<std::int64_t> LinuxSmcSource::speedOf(Fan& fan) {
  std::array<char, 32> buffer;
  const auto state = fan.powerState.read(buffer);
  if (state && state->starts_with("suspended")) return std::nullopt;
  const auto speed = fan.speed.integer();
  return isSpeed(speed) ? speed : std::nullopt;
}

std::optional<LinuxSmcSource::Value> LinuxSmcSource::valueOf(std::uint32_t key, bool readsNow) {
  if (key == fourCC("FNum")) {
    return Value{fourCC("ui8 "), {static_cast<std::uint8_t>(fans_.size())}};
  }
  const auto index = static_cast<std::size_t>(letter(key, 1) - '0');
  if (letter(key, 0) != 'F' || index >= fans_.size()) return std::nullopt;
  Fan& fan = fans_[index];
  Value value{fourCC("flt "), {}};
  if (letter(key, 2) == 'A' && letter(key, 3) == 'c') {
    if (!readsNow) return value;
    if (const auto speed = speedOf(fan)) value.bytes = floatBytes(*speed);
    return value;
  }
  if (letter(key, 2) == 'M' && letter(key, 3) == 'x' && fan.maximum) {
    value.bytes = floatBytes(*fan.maximum);
    return value;
  }
  return std::nullopt;
}

bool LinuxSmcSource::call(const SmcPacketBytes& input, SmcPacketBytes& output) {
  const Packet question = Packet::decode(input);
  const bool readsNow = question.command == kSmcReadValue;
  if (!isOpen() || (!readsNow && question.command != kSmcReadKeyInfo)) return false;
  Packet answer;
  answer.key = question.key;
  answer.command = question.command;
  const auto value = valueOf(question.key, readsNow);
  answer.result = value && !(readsNow && value->bytes.empty()) ? kSuccess : kKeyNotFound;
  if (answer.result == kSuccess && readsNow) {
    std::copy(value->bytes.begin(), value->bytes.end(), answer.bytes.begin());
  } else if (answer.result == kSuccess) {
    answer.dataSize = value->type == fourCC("ui8 ") ? 1 : 4;
    answer.dataType = value->type;
  }
  output = answer.encode();
  return true;
}

}  // namespace embrix
