#include "records/rename.h"

#include <filesystem>
#include <system_error>

#include "base/path_text.h"

namespace embrix {

namespace {

const std::string kOwn;  // the program's own settings have no name

bool exists(const std::string& path) {
  std::error_code error;
  return std::filesystem::exists(path, error);
}

}  // namespace

void Rename::moveHistory(const std::string& applicationSupport) {
  if (applicationSupport.empty()) return;
  const std::string former = PathText::joined(applicationSupport, kFormerFolder);
  const std::string present = PathText::joined(applicationSupport, HistoryStore::kFolder);
  if (!exists(former) || exists(present)) return;
  std::error_code error;
  std::filesystem::rename(former, present, error);
}

void Rename::copySettings(SettingsStores& stores, const std::optional<std::string>& identifier) {
  if (!identifier || *identifier == kFormerDomain) return;
  const std::string former(kFormerDomain);
  if (stores.hasSettings(kOwn) || !stores.hasSettings(former)) return;
  stores.copySettings(former, kOwn);
}

}  // namespace embrix
