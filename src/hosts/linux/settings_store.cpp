#include "hosts/linux/settings_store.h"

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

#include "base/base64.h"
#include "base/whole_file.h"

namespace embrix {

namespace {

// JSON has no bytes: they are an object of this one key, with base64.
constexpr std::string_view kData = "data";

constexpr std::size_t kMostBytes = std::size_t{4} * 1024 * 1024;

std::optional<Json> readObject(const std::string& path) {
  const auto text = readWholeFile(path, kMostBytes);
  if (!text) return std::nullopt;
  auto values = parseJson(*text);
  if (!values || !values->is_object()) return std::nullopt;
  return values;
}

std::optional<SettingValue> settingValue(const Json& value) {
  if (const auto truth = jsonBool(value)) return *truth;
  if (const auto number = jsonDouble(value)) return *number;
  if (auto text = jsonText(value)) return std::move(*text);
  if (const Json* data = value.size() == 1 ? jsonAt(value, kData) : nullptr) {
    const auto encoded = jsonText(*data);
    auto bytes = encoded ? bytesOfBase64(*encoded) : std::nullopt;
    return bytes ? std::optional(SettingData{std::move(*bytes)}) : std::nullopt;
  }
  if (!value.is_array()) return std::nullopt;
  std::vector<std::string> texts;
  for (const Json& each : value) {
    auto text = jsonText(each);
    if (!text) return std::nullopt;
    texts.push_back(std::move(*text));
  }
  return texts;
}

void makeFolderOf(const std::string& path) {
  std::error_code error;
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  if (std::filesystem::create_directories(folder, error)) {
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all, error);
  }
}

// A file that could hold settings, whether or not it may be read at this moment.
bool isFileOfSettings(const std::string& path) {
  std::error_code error;
  return std::filesystem::is_regular_file(path, error) &&
         std::filesystem::file_size(path, error) <= kMostBytes;
}

struct AsJson {
  Json operator()(SettingData& value) const { return {{kData, base64(value.bytes)}}; }
  Json operator()(auto& value) const { return Json(std::move(value)); }
};

}  // namespace

FileSettingsStore::FileSettingsStore(std::string path, Writing writing)
    : path_(std::move(path)), writing_(writing) {
  load();
}

std::optional<SettingValue> FileSettingsStore::stored(std::string_view key) const {
  const Json* value = jsonAt(values_, key);
  return value == nullptr ? std::nullopt : settingValue(*value);
}

void FileSettingsStore::set(std::string_view key, SettingValue value) {
  if (!isUtf8(key)) return;
  values_[std::string(key)] = std::visit(AsJson{}, value);
  save();
}

void FileSettingsStore::remove(std::string_view key) {
  const auto found = values_.find(key);
  if (found == values_.end()) return;
  values_.erase(found);
  save();
}

void FileSettingsStore::removeAll() {
  if (values_.empty()) return;
  values_.clear();
  save();
}

void FileSettingsStore::load() {
  std::error_code error;
  if (!std::filesystem::exists(path_, error)) return;
  if (auto values = readObject(path_)) {
    values_ = std::move(*values);
  } else if (isFileOfSettings(path_) && !readWholeFile(path_, kMostBytes)) {
    isUnread_ = true;
  } else {
    std::rename(path_.c_str(), (path_ + ".damaged").c_str());
  }
}

void FileSettingsStore::save() const {
  if (isUnread_) return;
  makeFolderOf(path_);
  Json written = values_;
  for (auto entry = written.begin(); entry != written.end();) {
    const auto number = jsonDouble(*entry);
    entry = number && !std::isfinite(*number) ? written.erase(entry) : std::next(entry);
  }
  const std::string text = dumpJson(written) + "\n";
  if (writing_ == Writing::flushed) {
    writeFileAtomically(path_, text);
  } else {
    writeFileUnflushed(path_, text);
  }
}

FileSettingsStores::FileSettingsStores(std::string folder) : folder_(std::move(folder)) {}

std::optional<std::string> FileSettingsStores::pathOf(const std::string& suite) const {
  const bool leadsAway = suite.find('/') != std::string::npos ||
                         suite.find('\0') != std::string::npos || suite.substr(0, 1) == ".";
  if (leadsAway) return std::nullopt;
  return folder_ + "/" + (suite.empty() ? "settings" : suite) + ".json";
}

std::unique_ptr<SettingsStore> FileSettingsStores::open(const std::string& suite) {
  const auto path = pathOf(suite);
  if (!path) return nullptr;
  // What a suite shares with other programs is a state of the moment. It may change with every
  // frame, and the main thread does not wait for a disk that often.
  using Writing = FileSettingsStore::Writing;
  return std::make_unique<FileSettingsStore>(*path,
                                             suite.empty() ? Writing::flushed : Writing::unflushed);
}

bool FileSettingsStores::hasSettings(const std::string& suite) {
  const auto path = pathOf(suite);
  std::error_code error;
  if (!path || !std::filesystem::exists(*path, error)) return false;
  const auto values = readObject(*path);
  return !values || !values->empty();
}

void FileSettingsStores::copySettings(const std::string& from, const std::string& to) {
  const auto source = pathOf(from);
  const auto target = pathOf(to);
  const auto values = source && target ? readObject(*source) : std::nullopt;
  if (!values) return;
  makeFolderOf(*target);
  writeFileAtomically(*target, dumpJson(*values) + "\n");
}

std::string settingsFolder(const char* xdgConfigHome, const std::string& homeDirectory) {
  const std::string_view configured = xdgConfigHome == nullptr ? "" : xdgConfigHome;
  const bool isUsable = !configured.empty() && configured.front() == '/';
  return (isUsable ? std::string(configured) : homeDirectory + "/.config") + "/embrix";
}

}  // namespace embrix
