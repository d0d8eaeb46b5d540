#include "hosts/linux/assertion_source.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "captured_tree.h"

namespace embrix {
namespace {

class LinuxAssertionSourceTest : public testing::Test {
 protected:
  LinuxAssertionSource source() {
    return LinuxAssertionSource(
        tree.root(), [this] { return inhibitors; }, [this] { return wallTime; });
  }
  static PropertyMap assertion(const std::string& process, const std::string& type,
                               const std::string& name, double since) {
    return {{"Process Name", process},
            {"AssertType", type},
            {"AssertName", name},
            {"AssertStartWhen", PropertyDate{since}}};
  }

  CapturedTree tree;
  std::optional<std::vector<LogindInhibitor>> inhibitors = std::vector<LogindInhibitor>();
  double wallTime = 1000;
};

using Assertions = std::vector<ProcessAssertions>;

TEST_F(LinuxAssertionSourceTest, WhatIsHeldOffDecidesTheType) {
  struct Case {
    const char* what;
    const char* mode;
    std::vector<std::string> types;
  };
  const Case cases[] = {
      {"idle", "block", {"PreventUserIdleSystemSleep"}},
      {"sleep", "block", {"PreventSystemSleep"}},
      {"shutdown:sleep:idle:handle-lid-switch",
       "block",
       {"PreventUserIdleSystemSleep", "PreventSystemSleep"}},
      {"idle", "block-weak", {"PreventUserIdleSystemSleep"}},
      {"sleep", "delay", {}},
      {"handle-lid-switch:handle-power-key", "block", {}},
      {"shutdown", "block", {}},
      {"sleepy:idleness", "block", {}},
      {"", "block", {}},
      {"sleep", "", {}},
      {":::", "block", {}},
  };
  for (const Case& c : cases) {
    inhibitors = {{c.what, "who", "why", c.mode, 1000, 42}};
    std::vector<std::string> types;
    for (const ProcessAssertions& process : source().read()) {
      EXPECT_EQ(process.pid, 42);
      for (const PropertyMap& map : process.assertions) {
        types.push_back(textAt(map, "AssertType").value_or("none"));
      }
    }
    EXPECT_EQ(types, c.types) << c.what << " " << c.mode;
  }
}

TEST_F(LinuxAssertionSourceTest, HoldsOfOneProcessStandTogether) {
  inhibitors = {{"idle", "Player", "Playing", "block", 1000, 50},
                {"sleep", "Backup", "Copying", "block", 0, 7},
                {"sleep", "Player", "Recording", "block", 1000, 50}};
  EXPECT_EQ(source().read(),
            (Assertions{
                {7, {assertion("Backup", "PreventSystemSleep", "Copying", 1000)}},
                {50,
                 {assertion("Player", "PreventUserIdleSystemSleep", "Playing", 1000),
                  assertion("Player", "PreventSystemSleep", "Recording", 1000)}},
            }));
}

TEST_F(LinuxAssertionSourceTest, AHolderWithoutANameHasTheKernels) {
  tree.write("proc/42/comm", "systemd-inhibit\n");
  inhibitors = {{"sleep", "", "", "block", 0, 42}, {"sleep", "", "", "block", 0, 43}};
  const Assertions assertions = source().read();
  ASSERT_EQ(assertions.size(), 2u);
  EXPECT_EQ(textAt(assertions[0].assertions[0], "Process Name"), "systemd-inhibit");
  EXPECT_EQ(textAt(assertions[0].assertions[0], "AssertName"), "");
  EXPECT_EQ(textAt(assertions[1].assertions[0], "Process Name"), std::nullopt);
}

TEST_F(LinuxAssertionSourceTest, AHoldDatesFromWhenItWasFirstSeen) {
  auto holds = source();
  const auto sinceOf = [&] {
    const Assertions assertions = holds.read();
    return assertions.empty() ? std::nullopt
                              : dateAt(assertions[0].assertions[0], "AssertStartWhen");
  };
  inhibitors = {{"sleep", "a", "b", "block", 0, 42}};
  EXPECT_EQ(sinceOf(), 1000);
  wallTime = 1010;
  EXPECT_EQ(sinceOf(), 1000);
  inhibitors = std::nullopt;  // the service does not answer for once
  EXPECT_EQ(sinceOf(), std::nullopt);
  inhibitors = {{"sleep", "a", "b", "block", 0, 42}};
  wallTime = 1020;
  EXPECT_EQ(sinceOf(), 1000);
  inhibitors->clear();  // let go
  EXPECT_EQ(sinceOf(), std::nullopt);
  inhibitors = {{"sleep", "a", "b", "block", 0, 42}};
  wallTime = 1030;
  EXPECT_EQ(sinceOf(), 1030);
}

TEST_F(LinuxAssertionSourceTest, HostileTextsArriveRepaired) {
  inhibitors = {{"sleep", "\xff\xfe", "why\xc3", "block", 0, 42}};
  const Assertions assertions = source().read();
  ASSERT_EQ(assertions.size(), 1u);
  EXPECT_EQ(textAt(assertions[0].assertions[0], "Process Name"), "\uFFFD\uFFFD");
  EXPECT_EQ(textAt(assertions[0].assertions[0], "AssertName"), "why\uFFFD");
}

TEST_F(LinuxAssertionSourceTest, PidsThatAreNoneAreLeftOut) {
  inhibitors = {{"sleep", "a", "b", "block", 0, 0},
                {"sleep", "a", "b", "block", 0, std::numeric_limits<std::uint32_t>::max()},
                {"sleep", "a", "b", "block", 0, 0x80000000u}};
  EXPECT_TRUE(source().read().empty());
}

TEST_F(LinuxAssertionSourceTest, WithoutAListNothingIsHeld) {
  inhibitors = std::nullopt;
  EXPECT_TRUE(source().read().empty());
}

}  // namespace
}  // namespace embrix
