#include "sampling/app_icon.h"

#include <fmt/format.h>

#include "running/friendly_name.h"
#include "sampling/bundle_path.h"

namespace embrix {
namespace {

constexpr std::string_view kSimulator = "com.apple.iphonesimulator";
constexpr std::string_view kXcode = "com.apple.dt.Xcode";

struct NamePrefix {
  std::string_view prefix;
  std::string_view bundleID;
};

// Groups whose names begin alike and have no bundle of their own. The first that fits decides.
constexpr NamePrefix kPrefixes[] = {
    {"Android", "com.google.android.studio"},     {"Gradle", "com.google.android.studio"},
    {"Kotlin", "com.google.android.studio"},      {"iOS Simulator", kSimulator},
    {"OrbStack", "dev.kdrag0n.MacVirt"},          {"Docker", "com.docker.docker"},
    {"Claude", "com.anthropic.claudefordesktop"},
};

std::optional<std::string> identifierFor(std::string_view name) {
  const auto& bundles = FriendlyName::bundleByName();
  const auto known = bundles.find(name);
  if (known != bundles.end()) return known->second.string();
  for (const auto& [prefix, bundleID] : kPrefixes) {
    if (name.starts_with(prefix)) return std::string(bundleID);
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> AppIcon::appPath(std::string_view name,
                                            const std::optional<std::string_view>& path) {
  std::string key = fmt::format("{}|{}", name, path.value_or(std::string_view()));
  const auto known = known_.find(key);
  if (known != known_.end()) return known->second;
  return known_.try_emplace(std::move(key), find(name, path)).first->second;
}

std::optional<std::string> AppIcon::find(std::string_view name,
                                         const std::optional<std::string_view>& path) {
  if (path) {
    if (const auto bundle = outermostBundle(*path)) return std::string(*bundle);
  }
  const std::optional<std::string> identifier = identifierFor(name);
  if (!identifier) return std::nullopt;
  if (auto found = source_->pathForIdentifier(*identifier)) return found;
  if (*identifier == kSimulator) return simulatorInsideXcode();
  return std::nullopt;
}

// The simulator comes with the developer tools and is often not known to the system by itself.
std::optional<std::string> AppIcon::simulatorInsideXcode() {
  const auto xcode = source_->pathForIdentifier(std::string(kXcode));
  if (!xcode) return std::nullopt;
  std::string path = fmt::format("{}/Contents/Developer/Applications/Simulator.app", *xcode);
  if (!exists_(path)) return std::nullopt;
  return path;
}

}  // namespace embrix
