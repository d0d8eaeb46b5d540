#include "darwin/kinfo_proc_table.h"

#include <algorithm>

namespace embrix {

void decodeProcessTable(Bytes bytes, std::vector<RawProcess>& table) {
  using namespace kinfo_proc_layout;
  const std::size_t count = bytes.size() / kSize;
  table.resize(count);
  for (std::size_t i = 0; i < count; ++i) {
    const Bytes record = bytes.subspan(i * kSize, kSize);
    RawProcess& process = table[i];
    process.pid = fieldAt<std::int32_t>(record, kPidOffset);
    process.ppid = fieldAt<std::int32_t>(record, kParentPidOffset);
    process.uid = fieldAt<std::uint32_t>(record, kEffectiveUidOffset);
    const auto startSeconds = fieldAt<std::int64_t>(record, kStartSecondsOffset);
    process.startTime = static_cast<std::uint64_t>(std::max<std::int64_t>(startSeconds, 0));
    process.commandName = textFieldAt(record, kCommandOffset, kCommandCapacity - 1);
    process.usage.reset();
  }
}

}  // namespace embrix
