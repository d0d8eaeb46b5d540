// Rows of a power log, as the tests write them.
#pragma once

#include <string>
#include <string_view>

#include <fmt/format.h>

namespace embrix {

// "2026-03-02 23:00:00 +0100 Sleep               ", a tab, the detail, a new line.
inline std::string row(std::string_view dayAndTime, std::string_view kind,
                       std::string_view detail) {
  return fmt::format("{} +0100 {:<20}\t{}\n", dayAndTime, kind, detail);
}

// A row of the night from the 2nd to the 3rd of March 2026: times from noon on are of the evening.
inline std::string at(std::string_view time, std::string_view kind, std::string_view detail = "") {
  const bool isEvening = time >= "12:00:00";
  return row(fmt::format("2026-03-0{} {}", isEvening ? 2 : 3, time), kind, detail);
}

inline constexpr double kEvening = 1772488800;  // 2026-03-02 23:00:00 +0100

}  // namespace embrix
