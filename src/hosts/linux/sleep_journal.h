// Suspend and resume in the system's journal. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace embrix {

// One entry of the journal that may tell of sleep.
struct JournalEntry {
  std::int64_t microseconds = 0;  // wall clock, since 1970, when the journal received it
  std::string messageID;          // 32 hexadecimal digits, empty for the kernel's entries
  std::string message;

  bool operator==(const JournalEntry&) const = default;
};

// The service manager's own numbers for "sleep begins" and "sleep has ended" (sd-messages(3)).
inline constexpr std::string_view kSleepStartID = "6bbd95ee977941e497c48be27c254128";
inline constexpr std::string_view kSleepStopID = "8811e6df2a8e40f58a94cea26f8ebf14";

// The newest `limit` entries about sleep, oldest first; of the files below `root`. Empty when there
// is no journal or this user may not read the system's.
std::vector<JournalEntry> readSleepEntries(const std::string& root, std::size_t limit);

}  // namespace embrix
