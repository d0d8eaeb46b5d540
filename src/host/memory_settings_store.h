// Settings that last as long as the store: where the platform has no place for them.
#pragma once

#include <map>
#include <string>

#include "host/settings_store.h"

namespace embrix {

class MemorySettingsStore final : public SettingsStore {
 public:
  std::optional<SettingValue> stored(std::string_view key) const override;
  void set(std::string_view key, SettingValue value) override;
  void remove(std::string_view key) override;
  void removeAll() override;

  using Values = std::map<std::string, SettingValue, std::less<>>;
  const Values& values() const { return values_; }

 private:
  Values values_;
};

}  // namespace embrix
