#include "sampling/process_roles.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace embrix {
namespace {

using testing::ElementsAre;
using Rows = std::vector<ProcessRow>;

struct RoleCase {
  const char* label;
  const char* process;
  const char* app;
  const char* expected;
};

class RoleRule : public testing::TestWithParam<RoleCase> {};

TEST_P(RoleRule, NamesTheRole) {
  EXPECT_EQ(ProcessRoles::role(GetParam().process, GetParam().app), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    ProcessRolesTest, RoleRule,
    testing::Values(
        RoleCase{"SameName", "Safari", "Safari", "Main app"},
        RoleCase{"SameNameInOtherCase", "Safari", "safari", "Main app"},
        RoleCase{"SameNameInOtherCaseBeyondASCII", "ÉCLAIR", "éclair", "Main app"},
        RoleCase{"Renderer", "Google Chrome Helper (Renderer)", "Google Chrome", "Web content"},
        RoleCase{"GPU", "Google Chrome Helper (GPU)", "Google Chrome", "Graphics"},
        RoleCase{"Plugin", "Google Chrome Helper (Plugin)", "Google Chrome", "Plugins"},
        RoleCase{"Alerts", "Google Chrome Helper (Alerts)", "Google Chrome", "Notifications"},
        RoleCase{"PlainHelper", "Google Chrome Helper", "Google Chrome", "Helpers"},
        RoleCase{"UnknownHelper", "Slack Helper (Utility)", "Slack", "Helpers (Utility)"},
        RoleCase{"HelperInOtherCase", "slack Helper (GPU)", "Slack", "Graphics"},
        RoleCase{"HelperAlone", "Helper (Renderer)", "Slack", "Web content"},
        RoleCase{"HelperOfAnotherApp", "Code Helper (GPU)", "Slack", "Code Helper (GPU)"},
        RoleCase{"HelperWithoutClosingBracket", "Slack Helper (", "Slack", "Helpers"},
        RoleCase{"HelperWithTextAndNoClosingBracket", "Slack Helper (GPU", "Slack", "Helpers"},
        RoleCase{"HelperWithEmptyBrackets", "Slack Helper ()", "Slack", "Helpers"},
        RoleCase{"HelperWithClosingBracketFirst", "Slack Helper )(GPU)", "Slack", "Graphics"},
        RoleCase{"HelperUpToTheFirstClosingBracket", "Slack Helper (a)(gpu)", "Slack",
                 "Helpers (a)"},
        RoleCase{"HelperMustBeginWithACapital", "Slack helper (GPU)", "Slack",
                 "Slack helper (GPU)"},
        RoleCase{"NameBeyondASCIIIsDroppedWhole", "İstanbul Helper (GPU)", "İstanbul", "Graphics"},
        RoleCase{"WideNameIsDroppedWhole", "日本 Helper", "日本", "Helpers"},
        RoleCase{"WebContent", "com.apple.WebKit.WebContent", "Mail", "Web content"},
        RoleCase{"WebKitGPU", "com.apple.WebKit.GPU", "Mail", "Graphics"},
        RoleCase{"WebKitNetworking", "com.apple.WebKit.Networking", "Mail", "Networking"},
        RoleCase{"WebKitOther", "com.apple.WebKit.Other", "Mail", "Other"},
        RoleCase{"CrashpadHandler", "chrome_crashpad_handler", "Google Chrome", "Crash reporter"},
        RoleCase{"CrashReporter", "AppCrashReporter", "App", "Crash reporter"},
        RoleCase{"CrashReporterMustEndTheName", "CrashReporterUI", "App", "CrashReporterUI"},
        RoleCase{"CrashReporterIsNotTheMainAppOfItself", "Crashpad", "Crashpad", "Main app"},
        RoleCase{"KnownProcess", "swift-frontend", "Xcode", "Swift compiler"},
        RoleCase{"ReversedDomainName", "com.example.Updater", "Example", "Updater"},
        RoleCase{"AnythingElse", "node", "Code", "node"},
        RoleCase{"AppWithoutAName", "Helper", "", "Helpers"},
        RoleCase{"IllFormedBytes", "\xff\xfe", "Mail", "\xff\xfe"}),
    [](const auto& test) { return test.param.label; });

TEST(ProcessRolesTest, EveryRoleHasASymbol) {
  const std::map<std::string, std::string> expected{
      {"Main app", "macwindow"},
      {"Web content", "doc.richtext"},
      {"Graphics", "cpu"},
      {"Plugins", "puzzlepiece.extension"},
      {"Notifications", "bell"},
      {"Networking", "network"},
      {"Crash reporter", "exclamationmark.triangle"},
      {"Helpers", "gearshape.2"},
      {"Helpers (Utility)", "gearshape.2"},
      {"node", "gearshape"},
      {"web content", "gearshape"},
      {"", "gearshape"},
  };
  for (const auto& [role, symbol] : expected) EXPECT_EQ(ProcessRoles::symbol(role), symbol) << role;
}

ProcessRow row(std::int32_t pid, const char* name, double watts, std::uint64_t memory = 0) {
  ProcessRow made;
  made.pid = pid;
  made.name = name;
  made.watts = watts;
  made.memoryBytes = memory;
  return made;
}

std::vector<std::string> namesOf(const std::vector<ProcessRole>& roles) {
  std::vector<std::string> names;
  for (const ProcessRole& role : roles) names.push_back(role.name);
  return names;
}

TEST(ProcessRolesTest, RowsAreGatheredUnderTheirRoleHungriestFirst) {
  const Rows rows{row(1, "Slack", 1), row(2, "Slack Helper (Renderer)", 0.5),
                  row(3, "Slack Helper (Renderer)", 2)};
  const auto roles = ProcessRoles::group(rows, "Slack");
  ASSERT_THAT(namesOf(roles), ElementsAre("Web content", "Main app"));
  EXPECT_EQ(roles[0].symbol, "doc.richtext");
  EXPECT_THAT(roles[0].processes, ElementsAre(rows[2], rows[1]));
  EXPECT_EQ(roles[1].symbol, "macwindow");
  EXPECT_THAT(roles[1].processes, ElementsAre(rows[0]));
}

TEST(ProcessRolesTest, EquallyHungryRowsKeepTheirOrder) {
  const Rows rows{row(5, "node", 1), row(3, "node", 1), row(4, "node", 1)};
  EXPECT_EQ(ProcessRoles::group(rows, "Code")[0].processes, rows);
}

TEST(ProcessRolesTest, RolesOfEqualWattsComeByMemory) {
  const auto roles =
      ProcessRoles::group({row(1, "a", 1, 100), row(2, "b", 1, 60), row(3, "b", 0, 60)}, "App");
  EXPECT_THAT(namesOf(roles), ElementsAre("b", "a"));
}

TEST(ProcessRolesTest, RolesOfEqualWattsAndMemoryComeByName) {
  const auto roles = ProcessRoles::group(
      {row(1, "zsh", 1, 8), row(2, "App", 1, 8), row(3, "Helper", 1, 8), row(4, "bash", 1, 8)},
      "App");
  EXPECT_THAT(namesOf(roles), ElementsAre("Helpers", "Main app", "bash", "zsh"));
}

TEST(ProcessRolesTest, MemoryBeyondAllMeasureDoesNotWrapAround) {
  const auto roles = ProcessRoles::group(
      {row(1, "a", 0, UINT64_MAX), row(2, "a", 0, UINT64_MAX), row(3, "b", 0, 1ULL << 40)}, "App");
  EXPECT_THAT(namesOf(roles), ElementsAre("a", "b"));
}

TEST(ProcessRolesTest, NoRowsHaveNoRoles) {
  EXPECT_TRUE(ProcessRoles::group({}, "App").empty());
}

RC_GTEST_PROP(ProcessRolesPropertyTest, EveryRowStandsInItsRoleAndTheOrderHolds, ()) {
  const auto names = std::vector<std::string>{"App",  "App Helper", "App Helper (GPU)", "node",
                                              "bash", "crashpad",   "App Helper (x)"};
  Rows rows;
  for (const auto& [name, watts] : *rc::gen::container<std::vector<std::pair<std::string, int>>>(
           rc::gen::pair(rc::gen::elementOf(names), rc::gen::inRange(0, 4)))) {
    rows.push_back(row(static_cast<std::int32_t>(rows.size()), name.c_str(), watts,
                       static_cast<std::uint64_t>(watts % 2)));
  }
  std::size_t count = 0;
  double lastSum = 1e9;
  for (const ProcessRole& role : ProcessRoles::group(rows, "App")) {
    double sum = 0;
    for (const ProcessRow& own : role.processes) {
      RC_ASSERT(ProcessRoles::role(own.name, "App") == role.name);
      sum += own.watts;
    }
    RC_ASSERT(sum <= lastSum);
    lastSum = sum;
    count += role.processes.size();
  }
  RC_ASSERT(count == rows.size());
}

}  // namespace
}  // namespace embrix
