#include "sampling/app_resolver.h"

#include <utility>

#include "base/text.h"
#include "sampling/bundle_path.h"

namespace embrix {
namespace {

// "Safari" for "/Applications/Safari.app".
std::string folderName(std::string_view bundlePath) {
  constexpr std::string_view kSuffix = ".app";
  std::string name(Text::lastPiece(bundlePath, '/'));
  for (std::size_t at = name.find(kSuffix); at != std::string::npos; at = name.find(kSuffix, at)) {
    name.erase(at, kSuffix.size());
  }
  return name;
}

// An empty identifier would make one group of everything that has it.
std::optional<SharedText> identifierIn(const std::optional<std::string>& text) {
  if (!text || text->empty()) return std::nullopt;
  return SharedText(Text::repaired(*text));
}

}  // namespace

const std::optional<AppInfo>& AppResolver::byExecutable(const SharedText& path) {
  const auto known = byExecutable_.find(path);
  if (known != byExecutable_.end()) return known->second;
  return byExecutable_.try_emplace(path, resolve(path)).first->second;
}

std::optional<AppInfo> AppResolver::resolve(std::string_view path) {
  const std::optional<std::string_view> bundlePath = outermostBundle(path);
  if (!bundlePath) return installed(path);
  const auto known = byBundle_.find(*bundlePath);
  if (known != byBundle_.end()) return known->second;
  return byBundle_.try_emplace(*bundlePath, openBundle(*bundlePath)).first->second;
}

AppInfo AppResolver::openBundle(std::string_view bundlePath) {
  std::string name = folderName(bundlePath);
  AppInfo info{.name = {}, .bundleID = std::nullopt, .bundlePath = SharedText(bundlePath)};
  if (auto bundle = source_->bundle(std::string(bundlePath))) {
    if (bundle->displayName) {
      name = *std::move(bundle->displayName);
    } else if (bundle->name) {
      name = *std::move(bundle->name);
    }
    info.bundleID = identifierIn(bundle->identifier);
  }
  info.name = Text::withoutFormatCharacters(name);
  return info;
}

std::optional<AppInfo> AppResolver::installed(std::string_view path) {
  const auto application = source_->byExecutable(std::string(path));
  if (!application) return std::nullopt;
  return AppInfo{.name = Text::withoutFormatCharacters(application->name),
                 .bundleID = identifierIn(application->identifier),
                 .bundlePath = SharedText(Text::repaired(application->path))};
}

}  // namespace embrix
