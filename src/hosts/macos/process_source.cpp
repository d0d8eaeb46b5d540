#include "hosts/macos/process_source.h"

#include <libproc.h>
#include <sys/resource.h>
#include <sys/sysctl.h>

#include <array>
#include <cstddef>

#include "darwin/kinfo_proc_table.h"
#include "darwin/usage_record.h"
#include "hosts/macos/clock.h"

namespace embrix {

namespace {

static_assert(sizeof(kinfo_proc) == kinfo_proc_layout::kSize);
static_assert(offsetof(kinfo_proc, kp_proc.p_starttime.tv_sec) ==
              kinfo_proc_layout::kStartSecondsOffset);
static_assert(sizeof(timeval::tv_sec) == sizeof(std::int64_t));
static_assert(offsetof(kinfo_proc, kp_proc.p_pid) == kinfo_proc_layout::kPidOffset);
static_assert(offsetof(kinfo_proc, kp_proc.p_comm) == kinfo_proc_layout::kCommandOffset);
static_assert(sizeof(extern_proc::p_comm) == kinfo_proc_layout::kCommandCapacity);
static_assert(offsetof(kinfo_proc, kp_eproc.e_ucred.cr_uid) ==
              kinfo_proc_layout::kEffectiveUidOffset);
static_assert(offsetof(kinfo_proc, kp_eproc.e_ppid) == kinfo_proc_layout::kParentPidOffset);

static_assert(sizeof(rusage_info_v6) == usage_layout::kSize);
static_assert(offsetof(rusage_info_v6, ri_user_time) == usage_layout::kUserTimeOffset);
static_assert(offsetof(rusage_info_v6, ri_system_time) == usage_layout::kSystemTimeOffset);
static_assert(offsetof(rusage_info_v6, ri_pkg_idle_wkups) ==
              usage_layout::kPackageIdleWakeupsOffset);
static_assert(offsetof(rusage_info_v6, ri_interrupt_wkups) ==
              usage_layout::kInterruptWakeupsOffset);
static_assert(offsetof(rusage_info_v6, ri_phys_footprint) == usage_layout::kFootprintOffset);
static_assert(offsetof(rusage_info_v6, ri_energy_nj) == usage_layout::kEnergyOffset);

// Processes that may start between asking for the table's size and reading it.
constexpr std::size_t kSpareRecords = 32;

std::optional<RawUsage> usageOf(std::int32_t pid) {
  std::array<std::uint8_t, usage_layout::kSize> record;
  if (::proc_pid_rusage(pid, RUSAGE_INFO_V6, reinterpret_cast<rusage_info_t*>(record.data())) !=
      0) {
    return std::nullopt;
  }
  return decodeUsage(record);
}

}  // namespace

MacProcessSource::MacProcessSource() : ticksToNS_(machineTimeUnitNS()) {}

void MacProcessSource::read(std::vector<RawProcess>& table) {
  int name[] = {CTL_KERN, KERN_PROC, KERN_PROC_ALL};
  constexpr u_int kNameSize = 3;
  std::size_t size = 0;
  if (::sysctl(name, kNameSize, nullptr, &size, nullptr, 0) == 0) {
    buffer_.resize((size / kinfo_proc_layout::kSize + kSpareRecords) * kinfo_proc_layout::kSize);
    size = buffer_.size();
    if (::sysctl(name, kNameSize, buffer_.data(), &size, nullptr, 0) != 0) size = 0;
  } else {
    size = 0;
  }
  decodeProcessTable(Bytes(buffer_).first(size), table);
  for (RawProcess& process : table) process.usage = usageOf(process.pid);
}

std::optional<std::string> MacProcessSource::executablePath(std::int32_t pid) {
  std::array<char, PROC_PIDPATHINFO_MAXSIZE> path;
  const int size = ::proc_pidpath(pid, path.data(), path.size());
  if (size < 1) return std::nullopt;
  return std::string(path.data(), static_cast<std::size_t>(size));
}

}  // namespace embrix
