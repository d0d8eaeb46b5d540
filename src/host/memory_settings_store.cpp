#include "host/memory_settings_store.h"

#include <utility>

namespace embrix {

std::optional<SettingValue> MemorySettingsStore::stored(std::string_view key) const {
  const auto found = values_.find(key);
  if (found == values_.end()) return std::nullopt;
  return found->second;
}

void MemorySettingsStore::set(std::string_view key, SettingValue value) {
  values_.insert_or_assign(std::string(key), std::move(value));
}

void MemorySettingsStore::remove(std::string_view key) {
  const auto found = values_.find(key);
  if (found != values_.end()) values_.erase(found);
}

void MemorySettingsStore::removeAll() {
  values_.clear();
}

}  // namespace embrix
