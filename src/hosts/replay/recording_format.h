// The lines of a recording: docs/recording.md tells their form. Pure; any thread.
#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "hosts/replay/recording_records.h"

namespace embrix {

inline constexpr int kRecordingVersion = 1;

// Longer lines are neither written nor read, so that a damaged file cannot take all memory.
inline constexpr std::size_t kLongestRecordingLine = std::size_t{64} << 20;  // bytes

// A tick reads the table once. Further readings are neither written nor read: a replay answers them
// with the last of these.
inline constexpr std::size_t kMostTablesInTick = 8;

// Why a line cannot be read, such as "processes[0].added[3].pid is missing": no line end, no full
// stop, nothing in it from the line but its keys.
struct RecordingProblem {
  std::string text;

  bool operator==(const RecordingProblem&) const = default;
};

// One line without its end.
std::string encodeHeader(const RecordingHeader& header);
std::string encodeTick(const RecordedTick& tick);

// Each takes one line without its end. Keys that are not known are passed over.
std::variant<RecordingHeader, RecordingProblem> decodeHeader(std::string_view line);
std::variant<RecordedTick, RecordingProblem> decodeTick(std::string_view line);

// Whether the line is JSON at all. One that is not was cut short, or is damaged.
bool isJsonLine(std::string_view line);

}  // namespace embrix
