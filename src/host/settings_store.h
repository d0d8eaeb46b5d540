// The user's settings: named values that are kept between runs. Main thread only.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace embrix {

// Bytes that are no text, such as an encoded record.
struct SettingData {
  std::string bytes;

  bool operator==(const SettingData&) const = default;
};

using SettingValue = std::variant<bool, double, std::string, std::vector<std::string>, SettingData>;

class SettingsStore {
 public:
  virtual ~SettingsStore() = default;

  // What the user has set under the key; absent when nothing is set. Registered defaults do not
  // show here.
  virtual std::optional<SettingValue> stored(std::string_view key) const = 0;

  // Keeps the value at once. A failure to write is dropped; the value stands for this run.
  virtual void set(std::string_view key, SettingValue value) = 0;

  virtual void remove(std::string_view key) = 0;

  // Forgets everything that the suite holds, registered defaults aside.
  virtual void removeAll() = 0;
};

// Opens the store with that suite name, or the program's own when the name is empty. Null when the
// platform refuses the suite.
class SettingsStores {
 public:
  virtual ~SettingsStores() = default;
  virtual std::unique_ptr<SettingsStore> open(const std::string& suite) = 0;

  // Whether anything at all is kept under that name, of whatever kind. Named as for open().
  virtual bool hasSettings(const std::string& suite) = 0;

  // Keeps under the second name what is kept under the first, of whatever kind, and nothing else.
  // A failure changes nothing. A store of the second that is open need not notice.
  virtual void copySettings(const std::string& from, const std::string& to) = 0;
};

}  // namespace embrix
