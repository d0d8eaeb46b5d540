// Settings stores that live in memory. Suites keep their contents from one opening to the next, as
// files do, and the platform can refuse one.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>

#include "host/memory_settings_store.h"

namespace embrix {

class MemorySettingsStores final : public SettingsStores {
 public:
  std::unique_ptr<SettingsStore> open(const std::string& suite) override {
    opened.push_back(suite);
    if (refused.count(suite) > 0) return nullptr;
    return std::make_unique<Forward>(suites[suite]);
  }

  bool hasSettings(const std::string& suite) override {
    const auto found = suites.find(suite);
    return found != suites.end() && !found->second.values().empty();
  }
  void copySettings(const std::string& from, const std::string& to) override {
    suites[to] = suites[from];
  }

  std::map<std::string, MemorySettingsStore> suites;
  std::set<std::string> refused;
  std::vector<std::string> opened;  // in order

 private:
  class Forward final : public SettingsStore {
   public:
    explicit Forward(MemorySettingsStore& to) : to_(to) {}
    std::optional<SettingValue> stored(std::string_view key) const override {
      return to_.stored(key);
    }
    void set(std::string_view key, SettingValue value) override { to_.set(key, std::move(value)); }
    void remove(std::string_view key) override { to_.remove(key); }
    void removeAll() override { to_.removeAll(); }

   private:
    MemorySettingsStore& to_;
  };
};

}  // namespace embrix
