// The fans of the kernel's hardware monitoring, answering as the controller's keys do:
//
//   FNum  ui8   how many fans, at most 10: a key has room for one digit
//   F<i>Ac flt  revolutions per minute now; no value while the driver gives none
//   F<i>Mx flt  the most; no such key where the driver tells no maximum
//
// Every other key is unknown. A fan on a graphics processor that sleeps is not asked, since asking
// would wake it. Sampling thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/smc_source.h"
#include "hosts/linux/system_file.h"

namespace embrix {

class LinuxSmcSource final : public SmcSource {
 public:
  // The fans that are there now are the ones that there are.
  explicit LinuxSmcSource(const std::string& root = "/");

  // True when there is a fan.
  bool isOpen() override { return !fans_.empty(); }
  bool call(const SmcPacketBytes& input, SmcPacketBytes& output) override;

 private:
  struct Fan {
    HeldFile speed;
    HeldFile powerState;  // of the device; absent for most
    std::optional<std::int64_t> maximum;
  };
  struct Value {
    std::uint32_t type = 0;
    std::vector<std::uint8_t> bytes;  // empty when there is no value just now
  };

  void addMonitor(const std::string& directory);
  std::optional<Value> valueOf(std::uint32_t key, bool readsNow);
  static std::optional<std::int64_t> speedOf(Fan& fan);

  std::vector<Fan> fans_;
};

}  // namespace embrix
