#include "sampling/assertion_reader.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "fakes/scripted_host.h"

namespace embrix {
namespace {

using Assertions = std::vector<PowerAssertion>;

class AssertionReaderTest : public testing::Test {
 protected:
  Assertions read() {
    Host host = world.host();
    return AssertionReader(*host.assertions).read();
  }

  ScriptedHost world;
};

TEST_F(AssertionReaderTest, OneRecordForEachHoldOfEachProcess) {
  world.assertions = {
      {.pid = 42,
       .assertions = {{{"Process Name", "caffeinate"},
                       {"AssertType", "PreventUserIdleSystemSleep"},
                       {"AssertName", "caffeinate command-line tool"},
                       {"AssertStartWhen", PropertyDate{1'750'000'000}}},
                      {{"Process Name", "caffeinate"}, {"AssertType", "PreventDiskIdle"}}}},
      {.pid = 7, .assertions = {{{"Process Name", "Music"}}}}};
  EXPECT_EQ(read(), (Assertions{{42, "caffeinate", "PreventUserIdleSystemSleep",
                                 "caffeinate command-line tool", 1'750'000'000},
                                {42, "caffeinate", "PreventDiskIdle", "", std::nullopt},
                                {7, "Music", "", "", std::nullopt}}));
}

TEST_F(AssertionReaderTest, AnUnreadableTableIsEmpty) {
  world.assertions = {{.pid = 42, .assertions = {PropertyMap{}}}};
  world.failing.insert("assertions.read");
  EXPECT_EQ(read(), Assertions{});
}

TEST_F(AssertionReaderTest, AProcessWithoutHoldsHasNoRecord) {
  world.assertions = {{.pid = 42, .assertions = {}}};
  EXPECT_EQ(read(), Assertions{});
}

TEST_F(AssertionReaderTest, AMalformedHoldIsToldWithWhatItHas) {
  world.assertions = {{.pid = 42,
                       .assertions = {{{"Process Name", 1},
                                       {"AssertType", PropertyList{}},
                                       {"AssertName", PropertyMap{}},
                                       {"AssertStartWhen", 1'750'000'000}},
                                      {}}},
                      {.pid = -3, .assertions = {PropertyMap{}}}};
  EXPECT_EQ(read(), (Assertions{{42, "pid 42", "", "", std::nullopt},
                                {42, "pid 42", "", "", std::nullopt},
                                {-3, "pid -3", "", "", std::nullopt}}));
}

TEST_F(AssertionReaderTest, AnEmptyProcessNameIsAName) {
  world.assertions = {{.pid = 42, .assertions = {{{"Process Name", ""}}}}};
  EXPECT_EQ(read(), (Assertions{{42, "", "", "", std::nullopt}}));
}

TEST_F(AssertionReaderTest, ADateThatIsNoNumberOrBefore1970IsNoDate) {
  for (const double seconds : {std::nan(""), -1.0, -63e9, HUGE_VAL, -HUGE_VAL}) {
    world.assertions = {{.pid = 42, .assertions = {{{"AssertStartWhen", PropertyDate{seconds}}}}}};
    EXPECT_EQ(read(), (Assertions{{42, "pid 42", "", "", std::nullopt}})) << seconds;
  }
}

}  // namespace
}  // namespace embrix
