#include "sampling/energy_reader.h"

#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "fakes/scripted_host.h"

namespace embrix {
namespace {

EnergyInterval cpuMillijoules(std::int64_t value, std::optional<double> seconds = std::nullopt) {
  return {.channels = {{.name = "CPU Energy", .unit = "mJ", .value = value}}, .seconds = seconds};
}

class EnergyReaderTest : public testing::Test {
 protected:
  // Reads once after so many seconds.
  std::optional<PowerBreakdown> readAfter(double seconds) {
    world.uptime += seconds;
    return reader.read();
  }

  std::optional<double> cpuAfter(double seconds) {
    const auto breakdown = readAfter(seconds);
    return breakdown ? std::optional(breakdown->cpu) : std::nullopt;
  }

  void publish(EnergyInterval interval) { world.energyIntervals.push_back(std::move(interval)); }

  ScriptedHost world;
  Host host = world.host();
  EnergyReader reader{*host.energy, *host.clock};
};

TEST_F(EnergyReaderTest, TheFirstReadOnlyTakesABaseline) {
  publish(cpuMillijoules(3000));
  EXPECT_EQ(readAfter(0), std::nullopt);
  EXPECT_EQ(cpuAfter(2), 1.5);
}

TEST_F(EnergyReaderTest, UptimeIsReadAfterTheSample) {
  readAfter(0);
  EXPECT_EQ(world.log, (std::vector<std::string>{"energy.sample", "clock.uptime"}));
}

TEST_F(EnergyReaderTest, ASourceWithoutCountersIsIdleForGood) {
  world.hasEnergyCounters = false;
  for (int i = 0; i < 3; ++i) EXPECT_EQ(readAfter(2), std::nullopt);
  // Neither the clock nor a difference is asked for.
  EXPECT_EQ(world.log, std::vector<std::string>(3, "energy.sample"));
}

TEST_F(EnergyReaderTest, AFailedSampleLeavesTheOneBefore) {
  publish(cpuMillijoules(8000));
  readAfter(0);
  world.failing.insert("energy.sample");
  EXPECT_EQ(readAfter(2), std::nullopt);
  world.failing.clear();
  EXPECT_EQ(cpuAfter(2), 2.0);  // 8 J over both ticks
}

TEST_F(EnergyReaderTest, AfterAFailedDifferenceTheNextIntervalBeginsAtThatSample) {
  publish(cpuMillijoules(1000));
  publish(cpuMillijoules(6000));
  readAfter(0);
  world.failing.insert("energy.interval");
  EXPECT_EQ(readAfter(10), std::nullopt);
  world.failing.clear();
  EXPECT_EQ(cpuAfter(2), 3.0);
}

TEST_F(EnergyReaderTest, TheSourcesOwnTimeStampsWinOverTheClock) {
  publish(cpuMillijoules(8000, 4.0));
  readAfter(0);
  EXPECT_EQ(cpuAfter(2), 2.0);
}

TEST_F(EnergyReaderTest, ATimeStampThatIsNoTimeLeavesItToTheClock) {
  publish(cpuMillijoules(8000, std::nan("")));
  publish(cpuMillijoules(8000, std::numeric_limits<double>::infinity()));
  readAfter(0);
  EXPECT_EQ(cpuAfter(2), 4.0);
  EXPECT_EQ(cpuAfter(4), 2.0);
}

// Ticks of one second, batches of two: every other tick sees nothing and the next sees the energy
// of both.
TEST_F(EnergyReaderTest, StampedBatchesKeepTheirWatts) {
  for (int i = 0; i < 4; ++i) {
    publish(cpuMillijoules(4000, 2.0));
    publish(cpuMillijoules(0, 0.0));
  }
  readAfter(0);
  for (int tick = 0; tick < 8; ++tick) EXPECT_EQ(cpuAfter(1), 2.0) << "tick " << tick;
}

TEST_F(EnergyReaderTest, BatchesWithoutStampsKeepTheirWatts) {
  for (int i = 0; i < 4; ++i) {
    publish(cpuMillijoules(0));
    publish(cpuMillijoules(4000));
  }
  readAfter(0);
  EXPECT_EQ(cpuAfter(1), std::nullopt);  // nothing measured yet, and not zero
  for (int tick = 1; tick < 8; ++tick) EXPECT_EQ(cpuAfter(1), 2.0) << "tick " << tick;
}

// The energy of a block that is published at once is not lost over a tick in which the CPU's batch
// is due: it counts, with its time, into the next figures.
TEST_F(EnergyReaderTest, EnergyOfASilentTickCountsIntoTheNext) {
  const auto both = [](std::int64_t cpu, std::int64_t gpu) {
    return EnergyInterval{.channels = {{.name = "CPU Energy", .unit = "mJ", .value = cpu},
                                       {.name = "GPU Energy", .unit = "nJ", .value = gpu}},
                          .seconds = std::nullopt};
  };
  publish(both(4000, 1'000'000'000));
  publish(both(0, 1'000'000'000));
  publish(both(4000, 3'000'000'000));
  readAfter(0);
  EXPECT_EQ(readAfter(2)->gpu, 0.5);
  EXPECT_EQ(readAfter(1)->gpu, 0.5);  // still the figures of the batch
  const auto breakdown = readAfter(1);
  EXPECT_EQ(breakdown->cpu, 2.0);
  EXPECT_EQ(breakdown->gpu, 2.0);
}

TEST_F(EnergyReaderTest, OfTwoCPUChannelsOneThatMovesIsEnough) {
  publish({.channels = {{.name = "CPU Energy", .unit = "mJ", .value = 0},
                        {.name = "CPU Energy", .unit = "mJ", .value = 1000}},
           .seconds = std::nullopt});
  readAfter(0);
  EXPECT_EQ(cpuAfter(1), 1.0);
}

TEST_F(EnergyReaderTest, WithoutACPUChannelNothingIsHeld) {
  const auto gpu = [](std::int64_t value) {
    return EnergyInterval{.channels = {{.name = "GPU Energy", .unit = "mJ", .value = value}},
                          .seconds = std::nullopt};
  };
  publish(gpu(1000));
  publish(gpu(0));
  readAfter(0);
  EXPECT_EQ(readAfter(1)->gpu, 1.0);
  EXPECT_EQ(readAfter(1)->gpu, 0.0);
}

TEST_F(EnergyReaderTest, CountersThatStayStillAreTakenAtTheirWordInTheEnd) {
  publish(cpuMillijoules(4000));
  for (int i = 0; i < 4; ++i) publish(cpuMillijoules(0));
  readAfter(0);
  EXPECT_EQ(cpuAfter(2), 2.0);
  EXPECT_EQ(cpuAfter(2), 2.0);
  EXPECT_EQ(cpuAfter(2), 2.0);
  EXPECT_EQ(cpuAfter(2), 0.0);
}

TEST_F(EnergyReaderTest, StampsThatStayStillEndInAnAbsentBreakdown) {
  publish(cpuMillijoules(4000, 2.0));
  for (int i = 0; i < 4; ++i) publish(cpuMillijoules(0, 0.0));
  publish(cpuMillijoules(6000, 2.0));
  readAfter(0);
  EXPECT_EQ(cpuAfter(2), 2.0);
  EXPECT_EQ(cpuAfter(2), 2.0);
  EXPECT_EQ(cpuAfter(2), 2.0);
  EXPECT_EQ(cpuAfter(2), std::nullopt);
  EXPECT_EQ(cpuAfter(2), std::nullopt);
  EXPECT_EQ(cpuAfter(2), 3.0);
}

TEST_F(EnergyReaderTest, ATickOfNoLengthHoldsTheFigures) {
  publish(cpuMillijoules(4000));
  publish(cpuMillijoules(10));
  publish(cpuMillijoules(1990));
  readAfter(0);
  EXPECT_EQ(cpuAfter(2), 2.0);
  EXPECT_EQ(cpuAfter(0), 2.0);
  EXPECT_EQ(cpuAfter(1), 2.0);
}

TEST_F(EnergyReaderTest, AStampThatGoesBackCountsAsNothingNew) {
  publish(cpuMillijoules(4000, 2.0));
  publish(cpuMillijoules(100, -5.0));
  publish(cpuMillijoules(3900, 2.0));
  readAfter(0);
  EXPECT_EQ(cpuAfter(2), 2.0);
  EXPECT_EQ(cpuAfter(2), 2.0);
  EXPECT_EQ(cpuAfter(2), 2.0);
}

}  // namespace
}  // namespace embrix
