#include "host/settings.h"

#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/memory_settings_store.h"

namespace embrix {
namespace {

using Texts = std::vector<std::string>;

Settings settingsWith(std::string_view key, SettingValue value) {
  auto store = std::make_unique<MemorySettingsStore>();
  store->set(key, std::move(value));
  return Settings(std::move(store));
}

TEST(SettingsTest, ValuesOfEveryTypeAreReadAsEveryType) {
  const struct {
    std::string label;
    SettingValue stored;
    double asDouble;
    bool asBool;
    std::optional<std::string> asString;
  } rows[] = {
      {"true", true, 1, true, "1"},
      {"false", false, 0, false, "0"},
      {"number", 2.5, 2.5, true, "2.5"},
      {"whole number", 5.0, 5, true, "5"},
      {"tenth", 0.1, 0.1, true, "0.1"},
      {"large number", 1e20, 1e20, true, "1e+20"},
      {"negative number", -1.0, -1, true, "-1"},
      {"zero", 0.0, 0, false, "0"},
      {"text of a number", std::string("15"), 15, false, "15"},
      {"text with a number in front", std::string(" 8.5 W"), 8.5, false, " 8.5 W"},
      {"text one", std::string("1"), 1, true, "1"},
      {"YES", std::string("YES"), 0, true, "YES"},
      {"true in mixed case", std::string("True"), 0, true, "True"},
      {"NO", std::string("NO"), 0, false, "NO"},
      {"any other word", std::string("dark"), 0, false, "dark"},
      {"empty text", std::string(), 0, false, ""},
      {"list", Texts{"1", "yes"}, 0, false, std::nullopt},
  };
  for (const auto& row : rows) {
    const Settings settings = settingsWith("key", row.stored);
    EXPECT_EQ(settings.doubleFor("key"), row.asDouble) << row.label;
    EXPECT_EQ(settings.boolFor("key"), row.asBool) << row.label;
    EXPECT_EQ(settings.stringFor("key"), row.asString) << row.label;
  }
}

TEST(SettingsTest, AMissingKeyReadsAsZeroFalseAndAbsent) {
  const Settings settings(std::make_unique<MemorySettingsStore>());
  EXPECT_EQ(settings.doubleFor("key"), 0);
  EXPECT_FALSE(settings.boolFor("key"));
  EXPECT_EQ(settings.stringFor("key"), std::nullopt);
  EXPECT_EQ(settings.stringsFor("key"), std::nullopt);
  EXPECT_EQ(settings.valueFor("key"), std::nullopt);
}

TEST(SettingsTest, ListsOfTextsAreReadAsListsOnly) {
  EXPECT_EQ(settingsWith("key", Texts{"a", "b"}).stringsFor("key"), (Texts{"a", "b"}));
  EXPECT_EQ(settingsWith("key", std::string("a")).stringsFor("key"), std::nullopt);
}

TEST(SettingsTest, ARegisteredDefaultHoldsUntilSomethingIsSetAndAfterItIsRemoved) {
  auto store = std::make_unique<MemorySettingsStore>();
  const MemorySettingsStore& disk = *store;
  Settings settings(std::move(store));
  settings.registerDefault("watts", 8.0);
  EXPECT_EQ(settings.doubleFor("watts"), 8);
  settings.set("watts", 9.0);
  EXPECT_EQ(settings.doubleFor("watts"), 9);
  EXPECT_EQ(disk.stored("watts"), SettingValue(9.0));
  settings.remove("watts");
  EXPECT_EQ(settings.doubleFor("watts"), 8);
  EXPECT_EQ(disk.stored("watts"), std::nullopt);
}

TEST(SettingsTest, RegisteringWritesNothing) {
  auto store = std::make_unique<MemorySettingsStore>();
  const MemorySettingsStore& disk = *store;
  Settings settings(std::move(store));
  settings.registerDefault("watts", 8.0);
  EXPECT_EQ(disk.stored("watts"), std::nullopt);
}

TEST(SettingsTest, WhatIsStoredWinsEvenIfItsTypeIsWrong) {
  Settings settings = settingsWith("watts", std::string("much"));
  settings.registerDefault("watts", 8.0);
  EXPECT_EQ(settings.doubleFor("watts"), 0);
}

TEST(SettingsTest, TheLastRegistrationCounts) {
  Settings settings(nullptr);
  settings.registerDefault("watts", 8.0);
  settings.registerDefault("watts", 9.0);
  EXPECT_EQ(settings.doubleFor("watts"), 9);
}

TEST(SettingsTest, BytesAreNothingButBytes) {
  const Settings settings = settingsWith("rules", SettingData{std::string("1\0[]", 4)});
  EXPECT_EQ(settings.dataFor("rules"), std::string("1\0[]", 4));
  EXPECT_EQ(settings.doubleFor("rules"), 0);
  EXPECT_FALSE(settings.boolFor("rules"));
  EXPECT_EQ(settings.stringFor("rules"), std::nullopt);
  EXPECT_EQ(settings.stringsFor("rules"), std::nullopt);
}

TEST(SettingsTest, ATextIsNoBytes) {
  EXPECT_EQ(settingsWith("rules", std::string("[]")).dataFor("rules"), std::nullopt);
}

TEST(SettingsTest, WithoutAStoreSettingsLastForTheRun) {
  Settings settings(nullptr);
  settings.set("appearance", std::string("dark"));
  EXPECT_EQ(settings.stringFor("appearance"), "dark");
}

}  // namespace
}  // namespace embrix
