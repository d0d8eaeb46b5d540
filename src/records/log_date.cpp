#include "records/log_date.h"

#include <array>
#include <cstdint>

namespace embrix {

namespace {

constexpr std::string_view kDateForm = "2026-03-02 03:14:05 +0100";
static_assert(kDateForm.size() == kLogDateLength);

bool isNumeral(char c) {
  return c >= '0' && c <= '9';
}
int digitAt(std::string_view text, std::size_t place) {
  return text[place] - '0';
}
int twoDigitsAt(std::string_view text, std::size_t place) {
  return digitAt(text, place) * 10 + digitAt(text, place + 1);
}

int daysInMonth(int year, int month) {
  constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool isLeap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return month == 2 && isLeap ? 29 : kDays[static_cast<std::size_t>(month) - 1];
}

// Days from 1970-01-01, by the calendar of today for all years. Years are counted from March, so
// that the day which leap years add is the last.
std::int64_t daysSince1970(int year, int month, int day) {
  const std::int64_t y = month <= 2 ? year - 1 : year;
  const int monthFromMarch = (month + 9) % 12;
  const int dayOfYear = (153 * monthFromMarch + 2) / 5 + day - 1;
  constexpr std::int64_t kFirstMarchOfYear0To1970 = 719468;
  return y * 365 + y / 4 - y / 100 + y / 400 + dayOfYear - kFirstMarchOfYear0To1970;
}

// Numerals wherever kDateForm has them, and its own characters in between, but for either sign of
// the zone.
bool hasDateForm(std::string_view text) {
  for (std::size_t i = 0; i < kDateForm.size(); ++i) {
    if (isNumeral(kDateForm[i]) ? !isNumeral(text[i]) : text[i] != kDateForm[i]) {
      if (kDateForm[i] != '+' || text[i] != '-') return false;
    }
  }
  return true;
}

}  // namespace

std::optional<double> logDateAtStart(std::string_view text) {
  if (text.size() < kDateForm.size() || !hasDateForm(text)) return std::nullopt;
  const int year = twoDigitsAt(text, 0) * 100 + twoDigitsAt(text, 2);
  const int month = twoDigitsAt(text, 5);
  const int day = twoDigitsAt(text, 8);
  const int hour = twoDigitsAt(text, 11);
  const int minute = twoDigitsAt(text, 14);
  const int second = twoDigitsAt(text, 17);
  const int zoneHours = twoDigitsAt(text, 21);
  const int zoneMinutes = twoDigitsAt(text, 23);
  if (year < 1 || month < 1 || month > 12 || day < 1 || day > daysInMonth(year, month)) return {};
  if (hour > 23 || minute > 59 || second > 59 || zoneHours > 23 || zoneMinutes > 59) return {};
  const int secondOfDay = (hour * 60 + minute) * 60 + second;
  const int zone = (zoneHours * 60 + zoneMinutes) * 60;
  return static_cast<double>(daysSince1970(year, month, day) * 86400 + secondOfDay -
                             (text[20] == '-' ? -zone : zone));
}

}  // namespace embrix
