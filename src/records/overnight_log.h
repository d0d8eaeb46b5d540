// What happened while the lid was shut: the system's power log, read as the story of its last
// sleep. Works on text alone, in one pass, and keeps no copy of it. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace embrix {

// The last real sleep: the last that ended with a full wake, and was no nap.
struct Overnight {
  // A name and how often it came up.
  struct Tally {
    std::string name;
    int count = 0;

    bool operator==(const Tally&) const = default;
  };

  double sleptAt = 0;                // seconds since 1970
  double wokeAt = 0;                 // seconds since 1970, at least 1800 later
  int darkWakes = 0;                 // wakes with the display off
  double awakeSeconds = 0;           // in those, as far as the log tells how long each was
  std::optional<int> chargeAtSleep;  // percent, 0 to 100
  std::optional<int> chargeAtWake;   // percent, 0 to 100
  bool onPower = false;              // on the adapter at any time of the sleep, or at its end
  // Most frequent first; equal counts in the order in which the log first names them.
  std::vector<Tally> causes;      // why it woke in the dark
  std::vector<Tally> requesters;  // who asked for the wakes

  bool operator==(const Overnight&) const = default;
};

struct OvernightLog {
  // One line of the log. The texts are views into it.
  struct Line {
    double date = 0;          // seconds since 1970
    std::string_view kind;    // "Sleep", "DarkWake", "Wake Requests"; can be empty
    std::string_view detail;  // empty when the line has no tab

    bool operator==(const Line&) const = default;
  };

  // `text` is the log, oldest line first; any bytes. Lines end with LF or CR LF. Absent when the
  // log holds no full wake, no sleep before the last one, or one of under half an hour.
  static std::optional<Overnight> parse(std::string_view text);

  // One line without its end: "2026-03-02 03:14:05 +0100 DarkWake  ", a tab, the detail. Absent for
  // headers, totals and all else that does not begin with a date in exactly this form.
  static std::optional<Line> line(std::string_view line);

  // What a dark wake is put down to, such as "Scheduled maintenance". The text is a constant.
  static std::string_view cause(std::string_view detail);

  // Who asked for the wake that took effect, the request marked with a star; absent without one.
  static std::optional<std::string> starredRequester(std::string_view detail);
};

}  // namespace embrix
