// The records as JSON: field names as keys, maps as objects, absent fields left out, no white
// space. Any thread.
//
// A file must be readable again whatever stood in the record: a byte that is not UTF-8 becomes
// U+FFFD, an entry of a map and an optional field whose number is not finite are left out, and a
// required number becomes 0 for NaN and the largest double for an infinity. (The records themselves
// let no such number in.) A double is written in the fewest digits that give the same double again.
#pragma once

#include <string>

#include "records/daily_record.h"
#include "records/day_ledger.h"
#include "records/discharge_session.h"
#include "records/history_point.h"
#include "records/power_baseline.h"

namespace embrix {

// Behind what stands in `out`.
void appendJson(std::string& out, const HistoryPoint& point);

std::string jsonOf(const DailyRecord& day);
std::string jsonOf(const DayLedger& ledger);
std::string jsonOf(const DischargeSession& session);
std::string jsonOf(const PowerBaseline& baseline);

}  // namespace embrix
