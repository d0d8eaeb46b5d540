#include "cleanup/cleanup_catalog.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "base/json.h"
#include "base/path_text.h"
#include "base/text.h"
#include "cleanup/version_order.h"
#include "darwin/property_list.h"
#include "running/simulator_finder.h"

namespace embrix {

namespace {

// Names that many projects share and that tell nothing about any.
bool isGeneric(std::string_view name) {
  constexpr std::array<std::string_view, 9> kGeneric = {
      "app", "ios", "macos", "android", "project", "runner", "example", "apple", "xcode"};
  return std::find(kGeneric.begin(), kGeneric.end(), Text::lowercased(name)) != kGeneric.end();
}

std::string_view withoutExtension(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  const bool isExtension = dot != std::string_view::npos && dot > 0 && dot + 1 < name.size();
  return isExtension ? name.substr(0, dot) : name;
}

std::string without(std::string_view text, std::string_view part) {
  std::string kept;
  for (std::size_t found; (found = text.find(part)) != std::string_view::npos;) {
    kept += text.substr(0, found);
    text.remove_prefix(found + part.size());
  }
  return kept.append(text);
}

bool beginsWithDigit(std::string_view text) {
  return !text.empty() && text.front() >= '0' && text.front() <= '9';
}

std::optional<CleanupCatalog::UnavailableSimulator> unavailable(const Json& device,
                                                                const std::string& runtime) {
  const Json* isAvailable = jsonAt(device, "isAvailable");
  const Json* udid = jsonAt(device, "udid");
  const Json* name = jsonAt(device, "name");
  if (isAvailable == nullptr || udid == nullptr || name == nullptr) return std::nullopt;
  const auto udidText = jsonText(*udid);
  const auto nameText = jsonText(*name);
  if (jsonBool(*isAvailable) != false || !udidText || !nameText) return std::nullopt;
  return CleanupCatalog::UnavailableSimulator{
      .udid = *udidText, .name = *nameText, .runtime = runtime};
}

}  // namespace

std::optional<CleanupCatalog::DerivedDataInfo> CleanupCatalog::derivedDataInfo(
    std::string_view data) {
  const auto list = decodePropertyList(data);
  const auto* info = list ? std::get_if<PropertyMap>(&list->value) : nullptr;
  if (info == nullptr) return std::nullopt;
  auto workspace = textAt(*info, "WorkspacePath");
  if (!workspace || !workspace->starts_with('/')) return std::nullopt;
  return DerivedDataInfo{.workspace = std::move(*workspace),
                         .lastAccessed = dateAt(*info, "LastAccessedDate")};
}

std::string CleanupCatalog::projectName(std::string_view workspace) {
  const std::string_view name = withoutExtension(PathText::name(workspace));
  if (!isGeneric(name)) return std::string(name);
  std::string_view folder = PathText::parent(workspace);
  while (isGeneric(PathText::name(folder))) folder = PathText::parent(folder);
  const std::string_view telling = PathText::name(folder);
  if (telling.empty()) return std::string(name);
  return fmt::format("{} ({})", name, telling);
}

std::string CleanupCatalog::shortPath(std::string_view path, std::string_view home) {
  const std::string_view folder = PathText::parent(path);
  if (!PathText::isAtOrBelow(folder, home)) return std::string(folder);
  const std::string_view below = PathText::below(folder, home);
  return below.empty() ? "~" : fmt::format("~/{}", below);
}

std::string CleanupCatalog::sharedCacheName(std::string_view name) {
  if (name == "ModuleCache.noindex") return "Module cache";
  if (name == "CompilationCache.noindex") return "Compilation cache";
  if (name == "SDKStatCaches.noindex") return "SDK caches";
  if (name == "SDKExplicitPrecompiledModules") return "Precompiled SDK modules";
  return without(name, ".noindex");
}

std::optional<CleanupCatalog::DeviceSupportFolder> CleanupCatalog::deviceSupport(
    std::string_view folder, std::string_view platformFolder) {
  DeviceSupportFolder parsed;
  parsed.platform = without(platformFolder, " DeviceSupport");
  if (parsed.platform.empty()) parsed.platform = "iOS";
  auto pieces = Text::split(folder, ' ');
  if (!pieces.empty() && pieces.back().size() > 1 && pieces.back().front() == '(' &&
      pieces.back().back() == ')') {
    parsed.build = std::string(pieces.back().substr(1, pieces.back().size() - 2));
    pieces.pop_back();
  }
  if (pieces.empty() || !beginsWithDigit(pieces.back())) return std::nullopt;
  parsed.version = std::string(pieces.back());
  pieces.pop_back();
  if (!pieces.empty()) parsed.model = std::string(pieces.front());
  return parsed;
}

std::map<std::string, std::string> CleanupCatalog::supersededDeviceSupport(
    const std::vector<std::pair<std::string, DeviceSupportFolder>>& folders) {
  std::map<std::string, const DeviceSupportFolder*> newestOfModel;
  const auto groupOf = [](const DeviceSupportFolder& folder) {
    return folder.platform + "|" + *folder.model;
  };
  for (const auto& [path, folder] : folders) {
    if (!folder.model) continue;
    auto& newest = newestOfModel[groupOf(folder)];
    if (newest == nullptr || compareVersions(folder.version, newest->version) > 0) newest = &folder;
  }
  std::map<std::string, std::string> messages;
  for (const auto& [path, folder] : folders) {
    if (!folder.model) continue;
    const DeviceSupportFolder& newest = *newestOfModel[groupOf(folder)];
    if (folder == newest) continue;
    messages[path] = fmt::format("This {} has moved on to {} {}", *folder.model, folder.platform,
                                 newest.version);
  }
  return messages;
}

std::optional<std::string> CleanupCatalog::runtimeName(std::string_view identifier) {
  const std::string_view last = Text::lastPiece(identifier, '.');
  if (last.empty()) return std::nullopt;
  return SimulatorFinder::runtimeName(last).value_or(std::string(last));
}

bool CleanupCatalog::isDeviceIdentifier(const std::string& text) {
  return SimulatorFinder::udid({"/Devices/" + text}) == text;
}

std::vector<CleanupCatalog::UnavailableSimulator> CleanupCatalog::unavailableSimulators(
    std::string_view json) {
  std::vector<UnavailableSimulator> simulators;
  const auto root = parseJson(json);
  const Json* runtimes = root ? jsonAt(*root, "devices") : nullptr;
  if (runtimes == nullptr || !runtimes->is_object()) return simulators;
  for (const auto& [identifier, devices] : runtimes->items()) {
    if (!devices.is_array()) continue;
    const std::string runtime = runtimeName(identifier).value_or("Simulator");
    for (const Json& device : devices) {
      if (auto simulator = unavailable(device, runtime))
        simulators.push_back(std::move(*simulator));
    }
  }
  std::stable_sort(simulators.begin(), simulators.end(),
                   [](const auto& a, const auto& b) { return a.udid < b.udid; });
  return simulators;
}

}  // namespace embrix
