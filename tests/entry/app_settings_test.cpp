#include "entry/app_settings.h"
#include "surfaces/surface_settings.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "host/memory_settings_store.h"
#include "model/setting_keys.h"

namespace embrix {
namespace {

TEST(AppSettingsTest, EveryDefaultHoldsUntilTheUserChangesIt) {
  Settings settings(nullptr);
  AppSettings::registerInto(settings);
  const std::pair<std::string, SettingValue> rows[] = {
      {"sampleInterval", 2.0},
      {"showWattsInMenuBar", true},
      {"warmWatts", 8.0},
      {"hotWatts", 15.0},
      {"runawayNotifications", false},
      {"alertWatts", 3.0},
      {"alertMinutes", 5.0},
      {"appearance", std::string("system")},
      {"automaticHeat", true},
      {"animateMenuBarFlame", false},
      {"hasSeenTour", false},
  };
  for (const auto& [key, value] : rows) EXPECT_EQ(settings.valueFor(key), value) << key;
  settings.set("warmWatts", 4.0);
  EXPECT_EQ(settings.doubleFor(SettingKeys::kWarmWatts), 4);
}

TEST(AppSettingsTest, TheWelcomeHasNoDefaultAndReadsAsFalse) {
  Settings settings(nullptr);
  AppSettings::registerInto(settings);
  EXPECT_EQ(settings.valueFor(SurfaceSettings::kHasSeenWelcome), std::nullopt);
  EXPECT_FALSE(settings.boolFor(SurfaceSettings::kHasSeenWelcome));
}

TEST(AppSettingsTest, DefaultsAreNeverWritten) {
  auto store = std::make_unique<MemorySettingsStore>();
  const MemorySettingsStore& disk = *store;
  Settings settings(std::move(store));
  AppSettings::registerInto(settings);
  EXPECT_EQ(disk.stored("sampleInterval"), std::nullopt);
  EXPECT_EQ(disk.stored("appearance"), std::nullopt);
}

}  // namespace
}  // namespace embrix
