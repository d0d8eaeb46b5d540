#include "darwin/usage_record.h"

namespace embrix {

std::optional<RawUsage> decodeUsage(Bytes record) {
  using namespace usage_layout;
  if (record.size() != kSize) return std::nullopt;
  return RawUsage{
      .userTime = fieldAt<std::uint64_t>(record, kUserTimeOffset),
      .systemTime = fieldAt<std::uint64_t>(record, kSystemTimeOffset),
      .packageIdleWakeups = fieldAt<std::uint64_t>(record, kPackageIdleWakeupsOffset),
      .interruptWakeups = fieldAt<std::uint64_t>(record, kInterruptWakeupsOffset),
      .footprint = fieldAt<std::uint64_t>(record, kFootprintOffset),
      .energyNJ = fieldAt<std::uint64_t>(record, kEnergyOffset),
  };
}

}  // namespace embrix
