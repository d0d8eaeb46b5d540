// The user's settings as one JSON object in a file below the XDG configuration folder. The keys are
// the settings'; true and false, numbers, texts and lists of texts are their values. What else a
// person or a later version put there is kept as it is and reads as nothing set. Main thread only.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/json.h"
#include "host/settings_store.h"

namespace embrix {

class FileSettingsStore final : public SettingsStore {
 public:
  enum class Writing {
    flushed,    // what is set outlasts a power cut
    unflushed,  // what was set last may not
  };

  // Reads the file once. A missing file holds no settings; one that cannot be read as settings is
  // set aside under its name with ".damaged" behind it, where the next such file replaces it. One
  // that may not be read, or not now for want of descriptors, stays as it is: then nothing is
  // written, and what is set stands for this run.
  explicit FileSettingsStore(std::string path, Writing writing = Writing::flushed);

  std::optional<SettingValue> stored(std::string_view key) const override;
  // Written at once, the whole file each time. JSON knows no NaN and no infinity: such a number
  // stands for this run and is not written. A key that is not UTF-8 sets nothing.
  void set(std::string_view key, SettingValue value) override;
  void remove(std::string_view key) override;
  void removeAll() override;

 private:
  void load();
  void save() const;

  std::string path_;
  Writing writing_;
  Json values_ = Json::object();
  bool isUnread_ = false;
};

class FileSettingsStores final : public SettingsStores {
 public:
  // `folder` is made at the first write.
  explicit FileSettingsStores(std::string folder);

  // "settings.json" for the program's own, else the suite's name with ".json" behind it; a suite is
  // written unflushed. Null for a name that would lead out of the folder.
  std::unique_ptr<SettingsStore> open(const std::string& suite) override;
  // True of a damaged file, too: nothing is to be put in its place.
  bool hasSettings(const std::string& suite) override;
  void copySettings(const std::string& from, const std::string& to) override;

 private:
  std::optional<std::string> pathOf(const std::string& suite) const;

  std::string folder_;
};

// Where the program's settings are: "embrix" below $XDG_CONFIG_HOME, or below ".config" in the home
// folder when that variable (null when unset) is empty or no absolute path.
std::string settingsFolder(const char* xdgConfigHome, const std::string& homeDirectory);

}  // namespace embrix
