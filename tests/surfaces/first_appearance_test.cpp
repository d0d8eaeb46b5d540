#include "surfaces/first_appearance.h"

#include <gtest/gtest.h>

#include "surfaces/surface_settings.h"
#include "worlds/model_world.h"

namespace embrix {
namespace {

using Section = DashboardSection;
using Arguments = std::vector<std::string>;

class FirstAppearanceTest : public testing::Test {
 protected:
  FirstAppearanceTest() { world.start(); }

  void appear(const Arguments& arguments, bool isSnapshotRun = false) {
    appearance.emplace(
        world.model(), world.scheduler, arguments, isSnapshotRun, [this](bool activates) {
          opened.push_back(std::string(dashboardSectionWord(*world.model().dashboardSection())) +
                           (activates ? " in front" : ""));
        });
  }
  void hasSeenWelcome() { world.defaults.set(SurfaceSettings::kHasSeenWelcome, true); }

  ModelWorld world;
  std::vector<std::string> opened;
  std::optional<FirstAppearance> appearance;
};

TEST_F(FirstAppearanceTest, AFirstRunOpensTheDashboardAfterThreeSeconds) {
  appear({"embrix"});
  world.scheduler.advance(2.9);
  EXPECT_EQ(opened, Arguments{});
  world.scheduler.advance(0.2);
  EXPECT_EQ(opened, Arguments{"overview in front"});
  world.scheduler.advance(10);
  EXPECT_EQ(opened.size(), 1u);
}

TEST_F(FirstAppearanceTest, WhoHasSeenTheWelcomeIsLeftAlone) {
  hasSeenWelcome();
  appear({"embrix"});
  world.scheduler.advance(10);
  EXPECT_EQ(opened, Arguments{});
}

TEST_F(FirstAppearanceTest, ASnapshotRunNeverOpensTheDashboardByTheFirstRun) {
  appear({"embrix", "--snapshot", "pictures"}, true);
  world.scheduler.advance(10);
  EXPECT_EQ(opened, Arguments{});
}

TEST_F(FirstAppearanceTest, AFirstRunWithAPageOpensThatAtOnceAndTheOverviewThreeSecondsLater) {
  appear({"embrix", "--dashboard", "battery"});
  EXPECT_EQ(opened, Arguments{"battery"});
  world.scheduler.advance(3.1);
  EXPECT_EQ(opened, (Arguments{"battery", "overview in front"}));
}

TEST_F(FirstAppearanceTest, TheOptionAsTheLastArgumentOrWithAnUnknownWordOpensTheOverview) {
  hasSeenWelcome();
  world.model().showSection(Section::apps);
  appear({"embrix", "--dashboard"});
  EXPECT_EQ(opened, Arguments{"overview"});
  world.model().showSection(Section::apps);
  appear({"embrix", "--dashboard", "no such page"});
  EXPECT_EQ(opened, (Arguments{"overview", "overview"}));
}

TEST_F(FirstAppearanceTest, TheModelOpensPagesByItFromThenOn) {
  hasSeenWelcome();
  world.model().showSection(Section::apps);
  appear({"embrix"});
  world.model().openConsole();
  EXPECT_EQ(opened, Arguments{"overview in front"});
  appearance.reset();
  world.model().openConsole();
  EXPECT_EQ(opened.size(), 1u) << "there is nobody to open it";
}

TEST_F(FirstAppearanceTest, AWelcomeThatIsStillAheadGoesWithTheRun) {
  appear({"embrix"});
  appearance.reset();
  world.scheduler.advance(10);
  EXPECT_EQ(opened, Arguments{});
}

TEST(FirstAppearanceOptionTest, TheDashboardOptionNamesAPageByItsWord) {
  struct Case {
    std::vector<std::string> arguments;
    std::optional<Section> expected;
  };
  const Case cases[] = {
      {{"embrix"}, {}},
      {{"embrix", "--dashboard", "battery"}, Section::battery},
      {{"embrix", "--dashboard", "settings", "--live"}, Section::settings},
      {{"embrix", "--dashboard"}, Section::overview},
      {{"embrix", "--dashboard", "Battery"}, Section::overview},
      {{"embrix", "--dashboard", "no such page"}, Section::overview},
      {{"embrix", "--dashboards", "battery"}, {}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(FirstAppearance::requestedSection(c.arguments), c.expected) << c.arguments.size();
  }
}

}  // namespace
}  // namespace embrix
