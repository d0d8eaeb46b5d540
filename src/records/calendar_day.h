// Which day a moment belongs to.
#pragma once

#include <functional>
#include <string>

namespace embrix {

// 0 for what a calendar does not tell.
struct CivilDate {
  int year = 0;
  int month = 0;
  int day = 0;

  bool operator==(const CivilDate&) const = default;
};

// From seconds since 1970 to the day that it is then.
using Calendar = std::function<CivilDate(double)>;

// In the time zone that the machine has now. All 0 for a moment so far away that there is no year
// for it. Any thread.
CivilDate localDate(double date);

// The key of a day in the records, "2026-03-02". Texts of years 0 to 9999 sort by date.
std::string dayKey(const CivilDate& date);

}  // namespace embrix
