// The user's defaults. Main thread only.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "host/settings_store.h"
#include "hosts/macos/cf_holder.h"

namespace embrix {

class MacSettingsStore final : public SettingsStore {
 public:
  // Takes over one reference to an NSUserDefaults object. `domain` is the name that its values are
  // kept under; empty for a program without an identifier, whose own values cannot be forgotten.
  MacSettingsStore(CFTypeRef defaults, std::string domain);

  // A value of another kind than a setting has reads as nothing set.
  std::optional<SettingValue> stored(std::string_view key) const override;
  // A key or a text that is not UTF-8 sets nothing.
  void set(std::string_view key, SettingValue value) override;
  void remove(std::string_view key) override;
  void removeAll() override;

 private:
  CfHolder<CFTypeRef> defaults_;
  std::string domain_;
};

class MacSettingsStores final : public SettingsStores {
 public:
  std::unique_ptr<SettingsStore> open(const std::string& suite) override;
  bool hasSettings(const std::string& suite) override;
  void copySettings(const std::string& from, const std::string& to) override;
};

}  // namespace embrix
