#include "entry/launch.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "memory_settings_stores.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kTesting = "app.embrix.uitesting";

class LaunchTest : public testing::Test {
 protected:
  Launch launch(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "embrix");
    return Launch(std::move(arguments), stores_);
  }
  std::optional<SettingValue> stored(const std::string& suite, std::string_view key) {
    return stores_.suites[suite].stored(key);
  }

  MemorySettingsStores stores_;
};

TEST_F(LaunchTest, ArgumentsTellTheKindOfRun) {
  const struct {
    std::string label;
    std::vector<std::string> arguments;
    bool isUITesting;
    bool usesFixture;
  } rows[] = {
      {"ordinary", {}, false, false},
      {"test run", {"--ui-testing"}, true, true},
      {"test run on the real machine", {"--ui-testing", "--live"}, true, false},
      {"live without a test run has no effect", {"--live"}, false, false},
      {"near miss", {"--ui-testing=1"}, false, false},
  };
  for (const auto& row : rows) {
    const Launch run = launch(row.arguments);
    EXPECT_EQ(run.isUITesting(), row.isUITesting) << row.label;
    EXPECT_EQ(run.usesFixture(), row.usesFixture) << row.label;
  }
}

TEST_F(LaunchTest, ArgumentsAreTheProcesssOwn) {
  EXPECT_THAT(launch({"--dump"}).arguments(), ElementsAre("embrix", "--dump"));
}

TEST_F(LaunchTest, AnOrdinaryRunReadsTheUsersSettings) {
  stores_.suites[""].set("warmWatts", 9.0);
  EXPECT_EQ(launch({}).defaults().doubleFor("warmWatts"), 9);
  EXPECT_THAT(stores_.opened, ElementsAre(""));
}

TEST_F(LaunchTest, SetStoresANumberAsDoubleAndAWordAsText) {
  Launch run = launch({"--ui-testing", "--set", "sampleInterval=5", "--set", "appearance=dark"});
  EXPECT_EQ(run.defaults().valueFor("sampleInterval"), SettingValue(5.0));
  EXPECT_EQ(run.defaults().valueFor("appearance"), SettingValue(std::string("dark")));
}

TEST_F(LaunchTest, SetSplitsItsPairAtTheFirstEqualsSign) {
  const struct {
    std::string label;
    std::string pair;
    std::string key;
    std::optional<SettingValue> expected;
  } rows[] = {
      {"no value", "key=", "key", std::nullopt},
      {"no key", "=value", "", std::nullopt},
      {"no key, and no key taken from the value", "=value", "value", std::nullopt},
      {"neither", "=", "", std::nullopt},
      {"no sign", "key", "key", std::nullopt},
      {"second sign", "a=b=c", "a", SettingValue(std::string("b=c"))},
      {"doubled sign", "a==b", "a", SettingValue(std::string("=b"))},
      {"leading sign", "=a=b", "a", std::nullopt},
      {"blanks stay", "a = b", "a ", SettingValue(std::string(" b"))},
      {"number with a blank is a text", "a= 5", "a", SettingValue(std::string(" 5"))},
      {"number with a unit is a text", "a=5s", "a", SettingValue(std::string("5s"))},
      {"fraction", "a=0.5", "a", SettingValue(0.5)},
      {"a truth value is a text", "a=true", "a", SettingValue(std::string("true"))},
  };
  for (const auto& row : rows) {
    Launch run = launch({"--ui-testing", "--set", row.pair});
    EXPECT_EQ(run.defaults().valueFor(row.key), row.expected) << row.label;
  }
}

TEST_F(LaunchTest, TheScanForPairsGoesOnBehindEachValue) {
  Launch run = launch({"--set", "--set", "a=1", "--set", "b=2", "--ui-testing", "--set", "c=3",
                       "--set", "c=4", "--set"});
  // The first --set takes the second as its value, which leaves "a=1" to stand alone.
  EXPECT_EQ(run.defaults().valueFor("a"), std::nullopt);
  EXPECT_EQ(run.defaults().valueFor("b"), SettingValue(2.0));
  EXPECT_EQ(run.defaults().valueFor("c"), SettingValue(4.0));
}

TEST_F(LaunchTest, SetWithoutATestRunHasNoEffect) {
  Launch run = launch({"--set", "warmWatts=5"});
  EXPECT_EQ(run.defaults().valueFor("warmWatts"), std::nullopt);
  EXPECT_EQ(stored("", "warmWatts"), std::nullopt);
}

TEST_F(LaunchTest, ATestRunLeavesTheUsersSettingsUntouched) {
  stores_.suites[""].set("warmWatts", 9.0);
  Launch run = launch({"--ui-testing", "--set", "warmWatts=5"});
  EXPECT_EQ(run.defaults().doubleFor("warmWatts"), 5);
  run.defaults().set("hotWatts", 1.0);
  EXPECT_EQ(stored("", "warmWatts"), SettingValue(9.0));
  EXPECT_EQ(stored("", "hotWatts"), std::nullopt);
  EXPECT_THAT(stores_.opened, ElementsAre(kTesting));
}

TEST_F(LaunchTest, ASecondTestRunDoesNotSeeTheSettingsOfTheFirst) {
  launch({"--ui-testing", "--set", "a=1"}).defaults().set("b", true);
  Launch second = launch({"--ui-testing", "--set", "c=3"});
  EXPECT_EQ(second.defaults().valueFor("a"), std::nullopt);
  EXPECT_EQ(second.defaults().valueFor("b"), std::nullopt);
  EXPECT_EQ(second.defaults().valueFor("c"), SettingValue(3.0));
}

TEST_F(LaunchTest, ARefusedSuiteFallsBackToTheUsersSettingsAndSetsNothingThere) {
  stores_.refused = {kTesting};
  stores_.suites[""].set("warmWatts", 9.0);
  Launch run = launch({"--ui-testing", "--set", "warmWatts=5"});
  EXPECT_EQ(run.defaults().doubleFor("warmWatts"), 9);
  EXPECT_EQ(stored("", "warmWatts"), SettingValue(9.0));
}

TEST_F(LaunchTest, WithoutAnyStoreSettingsLastForTheRun) {
  stores_.refused = {kTesting, ""};
  Launch run = launch({"--ui-testing"});
  run.defaults().set("warmWatts", 5.0);
  EXPECT_EQ(run.defaults().doubleFor("warmWatts"), 5);
}

TEST_F(LaunchTest, SettingsAreOpenedOnceAndOnlyWhenAskedFor) {
  Launch run = launch({"--ui-testing"});
  EXPECT_THAT(stores_.opened, IsEmpty());
  run.defaults().set("warmWatts", 5.0);
  EXPECT_EQ(run.defaults().doubleFor("warmWatts"), 5);
  EXPECT_THAT(stores_.opened, ElementsAre(kTesting));
}

}  // namespace
}  // namespace embrix
