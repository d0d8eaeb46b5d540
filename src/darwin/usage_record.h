// The record that `proc_pid_rusage` gives for RUSAGE_INFO_V6, the first flavour that tells a
// process's energy. Any thread.
#pragma once

#include <cstddef>
#include <optional>

#include "darwin/byte_fields.h"
#include "host/process_source.h"

namespace embrix {

// Places within `rusage_info_v6`; each field is unsigned 64-bit.
namespace usage_layout {
inline constexpr std::size_t kSize = 464;
inline constexpr std::size_t kUserTimeOffset = 16;            // ri_user_time, machine time units
inline constexpr std::size_t kSystemTimeOffset = 24;          // ri_system_time, machine time units
inline constexpr std::size_t kPackageIdleWakeupsOffset = 32;  // ri_pkg_idle_wkups
inline constexpr std::size_t kInterruptWakeupsOffset = 40;    // ri_interrupt_wkups
inline constexpr std::size_t kFootprintOffset = 72;           // ri_phys_footprint, bytes
inline constexpr std::size_t kEnergyOffset = 336;             // ri_energy_nj, nanojoules
}  // namespace usage_layout

// Absent when the record is not of exactly the right size.
std::optional<RawUsage> decodeUsage(Bytes record);

}  // namespace embrix
