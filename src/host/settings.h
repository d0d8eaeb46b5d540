// The settings as the program reads them: what the user stored, and below it the defaults that the
// program registered for this run. A value of another type than the one asked for is converted as a
// settings domain does it, so a number that came in as text still counts. Main thread only.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/settings_store.h"

namespace embrix {

class Settings {
 public:
  // A null store is replaced by one that lasts for this run.
  explicit Settings(std::unique_ptr<SettingsStore> store);

  // The value that applies while nothing is stored under the key. Never written anywhere; a second
  // registration of a key replaces the first.
  void registerDefault(std::string_view key, SettingValue value);

  // What is stored, else what is registered, else absent.
  std::optional<SettingValue> valueFor(std::string_view key) const;

  // A number as it is, a truth value as 1 or 0, a text by the decimal number at its start. 0 for
  // everything else and for a missing key.
  double doubleFor(std::string_view key) const;

  // A truth value as it is, a number unless it is 0, the texts "yes", "true" and "1" in any case.
  // False for everything else and for a missing key.
  bool boolFor(std::string_view key) const;

  // A text as it is, a number in the fewest digits that tell it ("5", "0.1"), a truth value as "1"
  // or "0". Absent for a list and for a missing key.
  std::optional<std::string> stringFor(std::string_view key) const;

  // Absent for anything but a list of texts.
  std::optional<std::vector<std::string>> stringsFor(std::string_view key) const;

  // Absent for anything but bytes.
  std::optional<std::string> dataFor(std::string_view key) const;

  // Kept at once; it wins over a registered default, also one of another type.
  void set(std::string_view key, SettingValue value);

  // Back to the registered default.
  void remove(std::string_view key);

 private:
  std::unique_ptr<SettingsStore> store_;
  std::map<std::string, SettingValue, std::less<>> registered_;
};

}  // namespace embrix
