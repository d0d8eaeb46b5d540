// The demo data's developer caches.

#include <fmt/format.h>

#include <string>
#include <utility>

#include "entry/fixture.h"

namespace embrix {

namespace {

constexpr double kDay = 86400;
constexpr double kGB = 1e9;

struct Item {
  std::string title;
  std::optional<std::string> detail;
  double gigabytes;
  double daysAgo;  // since it was last used
  std::string consequence;
  std::optional<std::string> inUse = {};
  std::optional<std::string> obsolete = {};
};

std::string rebuilds(std::string_view project) {
  return fmt::format("{}'s next build starts from scratch, and Xcode re-indexes it.", project);
}

// A spot whose items lie below a folder of a user who does not exist.
CleanupSpot spot(double now, std::string id, std::string title, std::string symbol,
                 const std::string& folder, const std::vector<Item>& items,
                 CleanupSpot::Kind kind = CleanupSpot::Kind::cache) {
  CleanupSpot spot{.id = std::move(id),
                   .title = std::move(title),
                   .symbol = std::move(symbol),
                   .kind = kind,
                   .items = {},
                   .folder = "/Users/you/" + folder};
  for (const Item& made : items) {
    CleanupItem item;
    item.id = fmt::format("{}/{}", *spot.folder, made.title);
    item.url = item.id;
    item.title = made.title;
    item.detail = made.detail;
    item.bytes = static_cast<std::int64_t>(made.gigabytes * kGB);
    item.lastUsed = now - made.daysAgo * kDay;
    item.consequence = made.consequence;
    item.inUse = made.inUse;
    item.obsolete = made.obsolete;
    spot.items.push_back(std::move(item));
  }
  return spot;
}

}  // namespace

std::vector<CleanupSpot> Fixture::cleanup(double now) {
  const std::string downloads = "The next build downloads what it needs of it again.";
  const std::string symbols = "Xcode copies them from the device again when you connect it.";
  std::vector<CleanupSpot> spots = {
      spot(now, "derived-data", "Xcode DerivedData", "hammer.fill",
           "Library/Developer/Xcode/DerivedData",
           {{"Lighthouse", "~/Code/lighthouse", 14.2, 0.1, rebuilds("Lighthouse"),
             "Xcode is running"},
            {"Tidepool", "~/Code/tidepool/ios", 8.6, 47, rebuilds("Tidepool")},
            {"Sunday", "~/Code/sunday", 3.1, 120, rebuilds("Sunday"), std::nullopt,
             "The project folder is gone"}}),
      spot(now, "device-support", "Device support files", "iphone",
           "Library/Developer/Xcode/iOS DeviceSupport",
           {{"iPhone18,1 · build 23G71", std::nullopt, 6.4, 4, symbols},
            {"iPhone16,2 · build 22F76", std::nullopt, 5.9, 210, symbols}}),
      spot(now, "gradle", "Gradle caches", "cube.fill", ".gradle/caches",
           {{"modules-2", "~/.gradle/caches/modules-2", 4.8, 2, downloads},
            {"8.2", "~/.gradle/caches/8.2", 1.7, 96, downloads}}),
      spot(now, "homebrew", "Homebrew downloads", "mug.fill", "Library/Caches",
           {{"Homebrew", "~/Library/Caches/Homebrew", 2.3, 41,
             "Homebrew downloads a package again when it is reinstalled."}}),
  };
  CleanupSpot simulators = spot(now, "unavailable-simulators", "Unavailable simulators",
                                "xmark.rectangle", "Library/Developer/CoreSimulator/Devices",
                                {{"iPhone 15", "iOS 17.5, not installed", 3.6, 150,
                                  "The simulator and everything in it are gone for good.",
                                  std::nullopt, "Its iOS version is no longer installed"}},
                                CleanupSpot::Kind::unavailableSimulators);
  simulators.items.front().simulatorUDID = "FIXTURE-OLD-SIMULATOR";
  simulators.items.front().url = std::nullopt;
  spots.insert(spots.begin() + 2, std::move(simulators));
  return spots;
}

}  // namespace embrix
