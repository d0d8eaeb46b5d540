#include "running/friendly_name.h"

#include <cstddef>
#include <string>

#include "base/text.h"

namespace embrix {
namespace {

// A last piece shorter than this says too little alone: "abc" of "com.example.abc".
constexpr std::size_t kShortestPiece = 4;

struct Entry {
  std::string_view processName;
  std::string_view displayName;
  std::string_view bundleID;  // empty for none
};

constexpr std::string_view kSimulator = "com.apple.iphonesimulator";
constexpr std::string_view kXcode = "com.apple.dt.Xcode";
constexpr std::string_view kAndroidStudio = "com.google.android.studio";
constexpr std::string_view kDocker = "com.docker.docker";
constexpr std::string_view kSpotlight = "com.apple.Spotlight";
constexpr std::string_view kPhotos = "com.apple.Photos";

constexpr Entry kEntries[] = {
    {"SimulatorTrampoline", "iOS Simulator", kSimulator},
    {"xpcproxy_sim", "iOS Simulator", kSimulator},
    {"launchd_sim", "iOS Simulator", kSimulator},
    {"com.apple.CoreSimulator.CoreSimulatorService", "iOS Simulator", kSimulator},
    {"swift-frontend", "Swift compiler", kXcode},
    {"swiftc", "Swift compiler", kXcode},
    {"swift-build", "Swift build", kXcode},
    {"xcodebuild", "Xcode build", kXcode},
    {"XCBBuildService", "Xcode build", kXcode},
    {"SWBBuildService", "Xcode build", kXcode},
    {"SourceKitService", "Xcode indexing", kXcode},
    {"sourcekit-lsp", "Swift language server", kXcode},
    {"clang", "C compiler", kXcode},
    {"ld", "Linker", kXcode},
    {"qemu-system-aarch64", "Android emulator", kAndroidStudio},
    {"qemu-system-x86_64", "Android emulator", kAndroidStudio},
    {"netsimd", "Android emulator network", kAndroidStudio},
    {"adb", "Android debug bridge", kAndroidStudio},
    {"com.docker.backend", "Docker", kDocker},
    {"com.docker.virtualization", "Docker", kDocker},
    {"kernel_task", "macOS kernel", {}},
    {"WindowServer", "Display (WindowServer)", {}},
    {"mds", "Spotlight indexing", kSpotlight},
    {"mds_stores", "Spotlight indexing", kSpotlight},
    {"mdworker_shared", "Spotlight indexing", kSpotlight},
    {"corespotlightd", "Spotlight indexing", kSpotlight},
    {"photoanalysisd", "Photos analysis", kPhotos},
    {"mediaanalysisd", "Photos analysis", kPhotos},
    {"backupd", "Time Machine", "com.apple.backup.launcher"},
    {"softwareupdated", "Software Update", {}},
    {"bird", "iCloud Drive", {}},
    {"cloudd", "iCloud", {}},
    {"fileproviderd", "iCloud Drive", {}},
    {"iconservicesagent", "macOS icon service", {}},
    {"duetexpertd", "macOS suggestions", {}},
    {"BiomeAgent", "macOS activity history", {}},
    {"ContextStoreAgent", "macOS suggestions", {}},
    {"tccd", "macOS privacy", {}},
    {"caffeinate", "caffeinate (keep awake)", {}},
};

std::vector<FriendlyName::Row> makeTable() {
  std::vector<FriendlyName::Row> rows;
  for (const Entry& entry : kEntries) {
    FriendlyName::Row row{.processName = entry.processName,
                          .displayName = entry.displayName,
                          .bundleID = std::nullopt,
                          .groupKey = FriendlyName::groupKey(entry.displayName)};
    if (!entry.bundleID.empty()) row.bundleID = SharedText(entry.bundleID);
    rows.push_back(std::move(row));
  }
  return rows;
}

HashMap<SharedText, const FriendlyName::Row*> makeIndex() {
  HashMap<SharedText, const FriendlyName::Row*> index;
  for (const FriendlyName::Row& row : FriendlyName::table()) {
    index.insert_or_assign(row.processName, &row);
  }
  return index;
}

HashMap<SharedText, SharedText> makeBundleByName() {
  HashMap<SharedText, SharedText> bundles;
  for (const FriendlyName::Row& row : FriendlyName::table()) {
    if (!row.bundleID) continue;
    bundles.insert_or_assign(row.processName, *row.bundleID);
    bundles.insert_or_assign(row.displayName, *row.bundleID);
  }
  return bundles;
}

}  // namespace

const std::vector<FriendlyName::Row>& FriendlyName::table() {
  static const std::vector<Row> rows = makeTable();
  return rows;
}

const FriendlyName::Row* FriendlyName::row(const SharedText& processName) {
  static const HashMap<SharedText, const Row*> index = makeIndex();
  const auto found = index.find(processName);
  return found == index.end() ? nullptr : found->second;
}

SharedText FriendlyName::name(const SharedText& processName) {
  if (const Row* known = row(processName)) return known->displayName;
  const std::string_view view = processName;
  if (!view.starts_with("com.") && !view.starts_with("org.")) return processName;
  if (view.find(' ') != std::string_view::npos) return processName;
  const std::string_view piece = Text::lastPiece(view, '.');
  return Text::characterCount(piece) < kShortestPiece ? processName : SharedText(piece);
}

SharedText FriendlyName::groupKey(const SharedText& displayName) {
  return "named:" + displayName.string();
}

const HashMap<SharedText, SharedText>& FriendlyName::bundleByName() {
  static const HashMap<SharedText, SharedText> bundles = makeBundleByName();
  return bundles;
}

}  // namespace embrix
