#include "hosts/macos/memory_source.h"

#include <mach/host_info.h>
#include <mach/mach_host.h>
#include <mach/mach_init.h>
#include <mach/vm_statistics.h>
#include <sys/sysctl.h>
#include <unistd.h>

#include "hosts/macos/system_control.h"

namespace embrix {

MacMemorySource::MacMemorySource()
    : host_(::mach_host_self()),
      pageSize_(static_cast<std::uint64_t>(::getpagesize())),
      physicalBytes_(physicalMemoryBytes()) {}

std::optional<MemoryCounters> MacMemorySource::counters() {
  vm_statistics64 statistics{};
  mach_msg_type_number_t size = HOST_VM_INFO64_COUNT;
  if (::host_statistics64(host_, HOST_VM_INFO64, reinterpret_cast<host_info64_t>(&statistics),
                          &size) != KERN_SUCCESS) {
    return std::nullopt;
  }
  return MemoryCounters{.internalPages = statistics.internal_page_count,
                        .purgeablePages = statistics.purgeable_count,
                        .wiredPages = statistics.wire_count,
                        .compressorPages = statistics.compressor_page_count};
}

std::optional<std::int32_t> MacMemorySource::freeLevel() {
  return systemNumber("kern.memorystatus_level");
}

std::uint64_t physicalMemoryBytes() {
  std::uint64_t bytes = 0;
  std::size_t size = sizeof bytes;
  if (::sysctlbyname("hw.memsize", &bytes, &size, nullptr, 0) != 0 || size != sizeof bytes) {
    return 0;
  }
  return bytes;
}

}  // namespace embrix
