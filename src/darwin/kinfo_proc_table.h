// The kernel's process table, as `sysctl` gives it for CTL_KERN, KERN_PROC, KERN_PROC_ALL: one
// `kinfo_proc` after the other. Usage counters are not in it. Any thread.
#pragma once

#include <cstddef>
#include <vector>

#include "darwin/byte_fields.h"
#include "host/process_source.h"

namespace embrix {

// Places within one `kinfo_proc` of a 64-bit kernel.
namespace kinfo_proc_layout {
inline constexpr std::size_t kSize = 648;
inline constexpr std::size_t kStartSecondsOffset = 0;  // kp_proc.p_starttime.tv_sec, signed 64-bit
inline constexpr std::size_t kPidOffset = 40;          // kp_proc.p_pid, signed 32-bit
inline constexpr std::size_t kCommandOffset = 243;     // kp_proc.p_comm, text
inline constexpr std::size_t kCommandCapacity = 17;    // 16 bytes and a NUL
inline constexpr std::size_t kEffectiveUidOffset = 420;  // kp_eproc.e_ucred.cr_uid, unsigned 32-bit
inline constexpr std::size_t kParentPidOffset = 560;     // kp_eproc.e_ppid, signed 32-bit
}  // namespace kinfo_proc_layout

// Replaces `table` with the records in their order, `usage` absent in each. The vector's storage
// and that of its texts is used again. Bytes after the last whole record are ignored. A start
// before 1970 counts as 0.
void decodeProcessTable(Bytes bytes, std::vector<RawProcess>& table);

}  // namespace embrix
