// A recording as the machine: its sources give what the recorded ones gave, tick by tick. Nothing
// is started, slept through or asked of the real machine.
//
// A question that was asked at the same tick of the recording gets the same answer; asked more
// often than then, the last answer again. Otherwise what is known of a process, an application, a
// controller's key, a command, a file or the power log stands as it was last told, and the clocks
// stand; all else is absent or empty. After the last tick the machine stands still as that tick
// left it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <variant>

#include "host/host.h"
#include "hosts/replay/recording_format.h"
#include "hosts/replay/replayed_moment.h"

namespace embrix {

struct Replay {
  Host host;
  std::uint64_t ticks = 0;    // how many the recording holds, at least 1
  bool tornLastLine = false;  // a last line that was cut short is left out of them
  // Whether the last tick has begun. Callable on any thread, also after the host is gone.
  std::function<bool()> finished;
  // When it is there. Callable like the other.
  std::function<ReplayedMoment()> moment;
};

using ReplayResult = std::variant<Replay, RecordingProblem>;

// Reads the whole recording once before anything is answered, so that damage anywhere in it is a
// problem here and now: one sentence with the file's name and, for damage, its line; no full stop.
// Ticks are then read again one by one as they begin.
ReplayResult openReplay(const std::string& path);

// The same for a recording in memory. The name stands in the problem.
ReplayResult openReplayOfBytes(std::string bytes, std::string name);

}  // namespace embrix
