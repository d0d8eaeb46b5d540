// Days as they are lived, with everything that comes of them worked out by hand. 36 W are a tenth
// of a watt-hour in ten seconds, and hot; 3.6 W are a hundredth, and calm.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fmt/format.h>

#include "day_script.h"

namespace embrix {
namespace {

using testing::ElementsAreArray;
using testing::SizeIs;

struct DaysCase {
  std::string label;
  std::string script;
  std::vector<std::string> expected;
};

class ModelDays : public testing::TestWithParam<DaysCase> {};

TEST_P(ModelDays, ComeOutAsWorkedOutByHand) {
  // Only who starts again reads the files.
  const bool restarts = GetParam().script.find("restart") != std::string::npos;
  DayScript script(restarts ? Records::kept : Records::dropped);
  script.play(GetParam().script);
  EXPECT_THAT(script.told(), ElementsAreArray(GetParam().expected));
}

// The first frame of a run adds nothing; the archive is as of the last third frame.
INSTANTIATE_TEST_SUITE_P(
    PowerModelTest, ModelDays,
    testing::Values(
        DaysCase{"AnHourOfWork",
                 R"(adapter 100%
                    draws Safari 3.6
                    run 3600)",
                 {"2025-06-15: 3.59 Wh (Safari 3.59), hot 0 s, spells 0, longest 0 s, "
                  "peak 3.6 W at 09:00:20 by Safari",
                  "archive 2025-06-15: 3.59 Wh"}},
        DaysCase{"UnpluggedForAWhile",
                 R"(adapter 90%
                    draws Safari 36
                    run 100
                    battery 80% 50Wh
                    run 100
                    adapter 80%
                    run 50)",
                 {"2025-06-15: 2.40 Wh (Safari 2.40), hot 240 s, spells 1, longest 240 s, "
                  "peak 36.0 W at 09:00:20 by Safari",
                  "archive 2025-06-15: 2.30 Wh",
                  "discharge from 80% at 09:01:50: 1.00 Wh (Safari 1.00), asleep 0 s 0% 0.00 Wh"}},
        DaysCase{"UnpluggedAgain",
                 R"(battery 80% 50Wh
                    draws Safari 36
                    run 100
                    adapter 80%
                    run 20
                    battery 79% 49Wh
                    run 30)",
                 {"2025-06-15: 1.40 Wh (Safari 1.40), hot 140 s, spells 1, longest 140 s, "
                  "peak 36.0 W at 09:00:20 by Safari",
                  "archive 2025-06-15: 1.40 Wh",
                  "discharge from 79% at 09:02:10: 0.30 Wh (Safari 0.30), asleep 0 s 0% 0.00 Wh"}},
        DaysCase{"AsleepOnBattery",
                 R"(battery 80% 50Wh
                    draws Safari 36
                    run 100
                    sleep 28800
                    battery 77% 48.5Wh
                    run 100)",
                 {"2025-06-15: 2.10 Wh (Safari 2.10), hot 210 s, spells 1, longest 210 s, "
                  "peak 36.0 W at 09:00:20 by Safari",
                  "archive 2025-06-15: 1.90 Wh",
                  "discharge from 80% at 09:00:10: 2.10 Wh (Safari 2.10), asleep 28800 s 3% 1.50 "
                  "Wh"}},
        DaysCase{"AsleepOnBatteryAndAwakeOnPower",
                 R"(battery 60% 40Wh
                    draws Safari 36
                    run 60
                    sleep 3600
                    adapter 58%
                    run 30)",
                 {"2025-06-15: 1.00 Wh (Safari 1.00), hot 100 s, spells 1, longest 100 s, "
                  "peak 36.0 W at 09:00:20 by Safari",
                  "archive 2025-06-15: 1.00 Wh",
                  "discharge from 60% at 09:00:10: 0.50 Wh (Safari 0.50), asleep 3600 s 2% 0.00 "
                  "Wh"}},
        DaysCase{"AsleepOnPowerThatIsPulled",
                 R"(battery 60% 40Wh
                    draws Safari 36
                    run 30
                    adapter 60%
                    run 30
                    sleep 3600
                    battery 55% 37Wh
                    run 30)",
                 {"2025-06-15: 1.00 Wh (Safari 1.00), hot 100 s, spells 1, longest 100 s, "
                  "peak 36.0 W at 09:00:20 by Safari",
                  "archive 2025-06-15: 1.00 Wh",
                  "discharge from 55% at 10:01:10: 0.50 Wh (Safari 0.50), asleep 0 s 0% 0.00 Wh"}},
        DaysCase{"MidnightAwake",
                 R"(at 23:58:20
                    adapter 100%
                    draws Safari 36
                    run 200)",
                 {"2025-06-16: 1.10 Wh (Safari 1.10), hot 110 s, spells 1, longest 110 s, "
                  "peak 36.0 W at 00:00:00 by Safari",
                  "archive 2025-06-15: 0.80 Wh", "archive 2025-06-16: 0.90 Wh"}},
        DaysCase{"MidnightAsleepTwice",
                 R"(at 22:00:00
                    adapter 100%
                    draws Safari 36
                    run 60
                    sleep 115200
                    run 60)",
                 {"2025-06-17: 0.80 Wh (Safari 0.80), hot 80 s, spells 1, longest 80 s, "
                  "peak 36.0 W at 06:01:10 by Safari",
                  "archive 2025-06-15: 0.50 Wh", "archive 2025-06-17: 0.80 Wh"}},
        DaysCase{"AShortRiseAndASpell",
                 R"(adapter 100%
                    draws Safari 3.6
                    run 30
                    draws Safari 36
                    run 20
                    draws Safari 3.6
                    run 10
                    draws Safari 36
                    run 30
                    draws Safari 3.6
                    run 20)",
                 {"2025-06-15: 0.55 Wh (Safari 0.55), hot 50 s, spells 1, longest 30 s, "
                  "peak 36.0 W at 09:00:40 by Safari",
                  "archive 2025-06-15: 0.53 Wh"}},
        DaysCase{"APeakThatNobodyIsToBlameFor",
                 R"(adapter 100%
                    draws Safari 36
                    run 30
                    draws A 9, B 9, C 9, D 9, E 9, F 9
                    run 40)",
                 {"2025-06-15: 0.80 Wh (A 0.10, B 0.10, C 0.10, D 0.10, E 0.10, F 0.10, Safari "
                  "0.20), hot 60 s, spells 1, longest 60 s, peak 54.0 W at 09:00:40 by nobody",
                  "archive 2025-06-15: 0.65 Wh"}},
        DaysCase{"ARestartInBetween",
                 R"(battery 80% 50Wh
                    draws Safari 36
                    run 100
                    restart
                    run 100)",
                 {"2025-06-15: 1.70 Wh (Safari 1.70), hot 170 s, spells 1, longest 170 s, "
                  "peak 36.0 W at 09:00:20 by Safari",
                  "archive 2025-06-15: 1.60 Wh",
                  "discharge from 80% at 09:00:10: 1.70 Wh (Safari 1.70), asleep 0 s 0% 0.00 Wh"}},
        DaysCase{"ARestartOnAHigherCharge",
                 R"(battery 60% 40Wh
                    draws Safari 36
                    run 30
                    restart
                    battery 61% 41Wh
                    run 30)",
                 {"2025-06-15: 0.40 Wh (Safari 0.40), hot 40 s, spells 1, longest 40 s, "
                  "peak 36.0 W at 09:00:20 by Safari",
                  "archive 2025-06-15: 0.40 Wh",
                  "discharge from 61% at 09:00:40: 0.20 Wh (Safari 0.20), asleep 0 s 0% 0.00 Wh"}},
        DaysCase{
            "ASteadyRunawayAlertsEveryHalfHour",
            R"(alerts 3W 5min
                    adapter 100%
                    draws Safari 36
                    run 3650)",
            {"2025-06-15: 36.40 Wh (Safari 36.40), hot 1770 s, spells 1, longest 1770 s, "
             "peak 36.0 W at 09:00:20 by Safari",
             "archive 2025-06-15: 36.20 Wh", "09:05:10 hot-Safari.app", "09:35:10 hot-Safari.app"}},
        DaysCase{"HeatIsToldOnce",
                 R"(alerts 3W 5min
                    adapter 100%
                    draws Safari 3.6
                    run 30
                    heat serious
                    run 20
                    heat nominal
                    run 20
                    heat serious
                    run 20)",
                 {"2025-06-15: 0.08 Wh (Safari 0.08), hot 0 s, spells 0, longest 0 s, "
                  "peak 3.6 W at 09:00:20 by Safari",
                  "archive 2025-06-15: 0.08 Wh", "09:00:40 throttle"}},
        DaysCase{"TheClockIsSetAYearAheadAndBack",
                 R"(adapter 100%
                    draws Safari 36
                    run 60
                    clock +31536000
                    run 60
                    clock -31536000
                    run 60)",
                 {"2025-06-15: 0.50 Wh (Safari 0.50), hot 50 s, spells 1, longest 50 s, "
                  "peak 36.0 W at 09:02:10 by Safari",
                  "archive 2025-06-15: 0.50 Wh", "archive 2026-06-15: 0.80 Wh"}}),
    [](const auto& test) { return test.param.label; });

TEST(ModelDaysTest, AWeekOfWorkOnBatteryIsLivedThrough) {
  DayScript script(Records::dropped);
  script.play("draws Safari 3.6");
  std::vector<double> discharged;
  for (int day = 0; day < 7; ++day) {
    // From nine to five on battery, plugged in for an hour, then asleep until nine.
    script.play(R"(battery 80% 50Wh
                   run 28800
                   adapter 20%
                   run 3600
                   sleep 54000)");
    discharged.push_back((*script.world.model().discharge())->totalWattHours);
  }
  const auto days = script.world.model().archive()->days();
  ASSERT_THAT(days, SizeIs(7));
  for (int day = 0; day < 7; ++day) {
    const auto index = static_cast<std::size_t>(day);
    EXPECT_EQ(days[index].day, fmt::format("2025-06-{}", 15 + day));
    // 3240 steps of a hundredth, that of the night worth three; the very first day has no night
    // before it.
    EXPECT_NEAR(days[index].wattHours, day == 0 ? 32.39 : 32.42, 0.001) << day;
    // 2880 steps on battery; likewise.
    EXPECT_NEAR(discharged[index], day == 0 ? 28.79 : 28.82, 0.001) << day;
  }
  EXPECT_EQ(script.world.model().history()->points().size(), 1800U);
  EXPECT_EQ(script.world.model().baseline()->samples().size(), 2880U);
  EXPECT_THAT(script.world.notifier.posted, testing::IsEmpty());
}

}  // namespace
}  // namespace embrix
