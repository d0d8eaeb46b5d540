#include "surfaces/appearance_mode.h"

#include <string>

#include <gtest/gtest.h>

#include "surfaces/surface_settings.h"

namespace embrix {
namespace {

TEST(AppearanceModeTest, TheStoredWordChoosesTheMode) {
  const struct {
    std::string label;
    std::optional<SettingValue> stored;
    AppearanceMode expected;
  } rows[] = {
      {"nothing", std::nullopt, AppearanceMode::system},
      {"system", std::string("system"), AppearanceMode::system},
      {"light", std::string("light"), AppearanceMode::light},
      {"dark", std::string("dark"), AppearanceMode::dark},
      {"unknown word", std::string("sepia"), AppearanceMode::system},
      {"other case", std::string("Dark"), AppearanceMode::system},
      {"empty", std::string(), AppearanceMode::system},
      {"number", 1.0, AppearanceMode::system},
  };
  for (const auto& row : rows) {
    for (const bool registered : {false, true}) {
      Settings settings(nullptr);
      if (registered) {
        settings.registerDefault(SurfaceSettings::kAppearance, std::string("system"));
      }
      if (row.stored) settings.set("appearance", *row.stored);
      EXPECT_EQ(currentAppearance(settings), row.expected) << row.label;
    }
  }
}

TEST(AppearanceModeTest, ListsItsCasesInOrderWithTheirWords) {
  ASSERT_EQ(kAppearanceModes.size(), 3U);
  EXPECT_EQ(appearanceWord(kAppearanceModes[0]), "system");
  EXPECT_EQ(appearanceWord(kAppearanceModes[1]), "light");
  EXPECT_EQ(appearanceWord(kAppearanceModes[2]), "dark");
}

}  // namespace
}  // namespace embrix
