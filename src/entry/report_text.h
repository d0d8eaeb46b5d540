// The report of --dump.
#pragma once

#include <optional>
#include <string>

#include "frame/frame.h"
#include "records/overnight_log.h"

namespace embrix {

// What the report tells beside the frame; absent parts print no line.
struct ReportExtras {
  std::optional<std::string> controlTitle;  // what the control center shows
  std::optional<Overnight> overnight;       // the last sleep

  bool operator==(const ReportExtras&) const = default;
};

// The whole report, every line ended by a line break. Names, titles and reasons come from other
// programs: what could act on a terminal is shown escaped, so each stays on its line.
std::string reportText(const Frame& frame, const ReportExtras& extras);

}  // namespace embrix
