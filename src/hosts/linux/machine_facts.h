// What the machine is, by its firmware's tables, its processor topology and its os-release. Read
// once at the start.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/machine_facts.h"

namespace embrix {

// productName: the firmware's name of the product, or of the main board where the maker left that
//   out; the device tree's model on boards without such firmware.
// chip: the processor's name without trade marks and clock rate; absent where the kernel gives
// none,
//   as on most ARM machines.
// performanceCores, efficiencyCores: physical cores that are online, not their threads; all of them
//   are performance cores when there is one kind. Absent without topology.
// memoryBytes: the memory that is fitted, where the kernel tells, else what the kernel manages.
// systemName: of os-release, such as "Debian GNU/Linux"; "Linux" and the kernel's version for a
//   distribution that numbers none.
MachineFacts linuxMachineFacts(const std::string& root = "/");

// "Intel(R) Core(TM) i7-1185G7 CPU @ 3.00GHz" → "Intel Core i7-1185G7".
std::string shortChipName(std::string_view modelName);

// The numbers at the start of "12", "22.04" or "6.12.9-arch1": 0 for those that are missing or do
// not fit.
struct SystemVersion {
  int major = 0;
  int minor = 0;
  int patch = 0;

  bool operator==(const SystemVersion&) const = default;
};
SystemVersion parseSystemVersion(std::string_view text);

// The value of a key of os-release, quotes removed; absent when the key is missing or empty.
std::optional<std::string> osReleaseValue(std::string_view text, std::string_view key);

}  // namespace embrix
