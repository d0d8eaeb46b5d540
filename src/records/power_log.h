// The system's log of sleep and wake as text of bounded length.
#pragma once

#include <cstddef>
#include <string>

#include "host/power_log_source.h"

namespace embrix {

struct PowerLog {
  // A log of months runs to many megabytes, and only its end is about the last sleep.
  static constexpr std::size_t kLongestLog = 4'000'000;  // characters: Unicode scalars

  // The last kLongestLog characters of the log as valid UTF-8, every malformed sequence replaced by
  // U+FFFD; its first line can be a part of one. Empty when there is no log. Can take seconds: not
  // for the main or the sampling thread.
  static std::string read(PowerLogSource& source);
};

}  // namespace embrix
