#include "host/settings.h"

#include <utility>

#include <fmt/format.h>

#include "base/number_text.h"
#include "host/memory_settings_store.h"

namespace embrix {

namespace {

bool equalsIgnoringCase(std::string_view text, std::string_view lower) {
  if (text.size() != lower.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if ((c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c) != lower[i]) return false;
  }
  return true;
}

struct AsDouble {
  double operator()(bool value) const { return value ? 1 : 0; }
  double operator()(double value) const { return value; }
  double operator()(const std::string& value) const { return leadingDouble(value); }
  double operator()(const std::vector<std::string>&) const { return 0; }
  double operator()(const SettingData&) const { return 0; }
};

struct AsBool {
  bool operator()(bool value) const { return value; }
  bool operator()(double value) const { return value != 0; }
  bool operator()(const std::string& value) const {
    return equalsIgnoringCase(value, "yes") || equalsIgnoringCase(value, "true") || value == "1";
  }
  bool operator()(const std::vector<std::string>&) const { return false; }
  bool operator()(const SettingData&) const { return false; }
};

struct AsString {
  using Result = std::optional<std::string>;
  Result operator()(bool value) const { return value ? "1" : "0"; }
  Result operator()(double value) const { return fmt::format("{}", value); }
  Result operator()(const std::string& value) const { return value; }
  Result operator()(const std::vector<std::string>&) const { return std::nullopt; }
  Result operator()(const SettingData&) const { return std::nullopt; }
};

}  // namespace

Settings::Settings(std::unique_ptr<SettingsStore> store) : store_(std::move(store)) {
  if (store_ == nullptr) store_ = std::make_unique<MemorySettingsStore>();
}

void Settings::registerDefault(std::string_view key, SettingValue value) {
  registered_.insert_or_assign(std::string(key), std::move(value));
}

std::optional<SettingValue> Settings::valueFor(std::string_view key) const {
  if (auto stored = store_->stored(key)) return stored;
  const auto found = registered_.find(key);
  if (found == registered_.end()) return std::nullopt;
  return found->second;
}

double Settings::doubleFor(std::string_view key) const {
  const auto value = valueFor(key);
  return value ? std::visit(AsDouble{}, *value) : 0;
}

bool Settings::boolFor(std::string_view key) const {
  const auto value = valueFor(key);
  return value && std::visit(AsBool{}, *value);
}

std::optional<std::string> Settings::stringFor(std::string_view key) const {
  const auto value = valueFor(key);
  return value ? std::visit(AsString{}, *value) : std::nullopt;
}

std::optional<std::vector<std::string>> Settings::stringsFor(std::string_view key) const {
  const auto value = valueFor(key);
  if (!value) return std::nullopt;
  const auto* strings = std::get_if<std::vector<std::string>>(&*value);
  return strings == nullptr ? std::nullopt : std::optional(*strings);
}

std::optional<std::string> Settings::dataFor(std::string_view key) const {
  const auto value = valueFor(key);
  if (!value) return std::nullopt;
  const auto* data = std::get_if<SettingData>(&*value);
  return data == nullptr ? std::nullopt : std::optional(data->bytes);
}

void Settings::set(std::string_view key, SettingValue value) {
  store_->set(key, std::move(value));
}

void Settings::remove(std::string_view key) {
  store_->remove(key);
}

}  // namespace embrix
