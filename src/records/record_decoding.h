// The records out of their JSON. Absent for anything but a whole record: a text that is no JSON, a
// required field that is missing or null, a value of another type, a whole number outside the range
// of its field. Keys that nobody knows are passed over; of a key that stands twice, the last value
// counts; an optional field that is null is absent. Any bytes, any thread.
#pragma once

#include <limits>
#include <optional>
#include <string_view>
#include <vector>

#include "records/archive.h"
#include "records/day_ledger.h"
#include "records/discharge_session.h"
#include "records/history_point.h"
#include "records/power_baseline.h"

namespace embrix {

// The points that are newer than that (seconds since 1970). The others must be whole as well.
std::optional<std::vector<HistoryPoint>> historyOfJson(
    std::string_view json, double newerThan = -std::numeric_limits<double>::infinity());

std::optional<DayLedger> ledgerOfJson(std::string_view json);
std::optional<Archive> archiveOfJson(std::string_view json);
std::optional<DischargeSession> dischargeOfJson(std::string_view json);
std::optional<PowerBaseline> baselineOfJson(std::string_view json);

}  // namespace embrix
