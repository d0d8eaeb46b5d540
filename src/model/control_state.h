// What a control outside the program's windows shows: published into settings that the control's
// process shares, and read there. Plain values; save and load on the main thread of their process.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/settings_store.h"

namespace embrix {

struct ControlState {
  double watts = 0;                    // of the whole machine, rounded to a whole number
  std::optional<std::string> subject;  // whom the verdict blames
  bool hot = false;                    // warm counts as well
  bool throttling = false;             // the system holds the machine back because of heat

  bool operator==(const ControlState&) const = default;

  // The suite of settings that the program and its control share. Its front is that of whoever
  // signs the build; "group" is everybody's.
  static constexpr std::string_view kSuite = "group.app.embrix";
  static constexpr std::string_view kKey = "controlState";

  // Into the suite; nothing happens without one.
  void save(SettingsStore* suite) const;

  // Absent without a suite, when nothing was saved there, or nothing that can be read.
  static std::optional<ControlState> load(const SettingsStore* suite);

  // "12 W · Warm"
  std::string title() const;
};

}  // namespace embrix
