#include "sampling/energy_reader.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "darwin/energy_report.h"
#include "fakes/scripted_host.h"
#include "sampling/smoother.h"

namespace embrix {
namespace {

EnergyInterval cpuMillijoules(std::int64_t value, std::optional<double> seconds = std::nullopt) {
  EnergyInterval interval{.channels = {{.name = "CPU Energy", .unit = "mJ", .value = value}},
                          .seconds = std::nullopt};
  if (seconds) interval.seconds = {*seconds};
  return interval;
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
  publish(cpuMillijoules(900, -5.0));
  publish(cpuMillijoules(4000, 2.0));
  readAfter(0);
  for (int tick = 0; tick < 3; ++tick) EXPECT_EQ(cpuAfter(2), 2.0) << "tick " << tick;
}

TEST_F(EnergyReaderTest, AnIntervalWithAStampStandsForItself) {
  publish(cpuMillijoules(4000));
  publish(cpuMillijoules(0));
  publish(cpuMillijoules(4200, 2.1));
  readAfter(0);
  EXPECT_EQ(cpuAfter(2), 2.0);
  EXPECT_EQ(cpuAfter(2), 2.0);
  EXPECT_EQ(cpuAfter(2), 2.0);
}

// A tick of a sequence: what the channels gathered in it, in millijoules and nanojoules, over a
// second. So it is on a machine that draws 2 W for ten seconds and then 6 W, and publishes the
// CPU's energy every two seconds and the GPU's, of 0.5 W, at once.
struct Tick {
  std::int64_t cpuMillijoules;
  std::int64_t gpuNanojoules;
};

const std::vector<Tick> kSequence = {
    {0, 500'000'000}, {4'000, 500'000'000},  {0, 500'000'000}, {4'000, 500'000'000},
    {0, 500'000'000}, {4'000, 500'000'000},  {0, 500'000'000}, {4'000, 500'000'000},
    {0, 500'000'000}, {4'000, 500'000'000},  {0, 500'000'000}, {12'000, 500'000'000},
    {0, 500'000'000}, {12'000, 500'000'000}, {0, 500'000'000}, {12'000, 500'000'000},
    {0, 500'000'000}, {12'000, 500'000'000}, {0, 500'000'000}, {12'000, 500'000'000},
};

TEST_F(EnergyReaderTest, FiguresOfASequenceOfBatches) {
  for (const auto& tick : kSequence) {
    publish({.channels = {{.name = "CPU Energy", .unit = "mJ", .value = tick.cpuMillijoules},
                          {.name = "GPU Energy", .unit = "nJ", .value = tick.gpuNanojoules}},
             .seconds = std::nullopt});
  }
  Smoother smoother(6);
  std::vector<double> cpu;  // of every tick, -1 where the breakdown is absent
  std::vector<double> gpu;
  std::vector<double> smooth;
  readAfter(0);
  for (std::size_t i = 0; i < kSequence.size(); ++i) {
    const auto breakdown = readAfter(1);
    cpu.push_back(breakdown ? breakdown->cpu : -1);
    gpu.push_back(breakdown ? breakdown->gpu : -1);
    if (breakdown) smooth.push_back(smoother.update("cpu", breakdown->cpu, 1));
  }

  // Tick by tick: 2 W, then 6 W from the batch on that brings it. Never 0, never 4 nor 12.
  std::vector<double> expected = {-1};
  expected.insert(expected.end(), 10, 2.0);
  expected.insert(expected.end(), 9, 6.0);
  EXPECT_EQ(cpu, expected);
  std::vector<double> expectedGPU(20, 0.5);
  expectedGPU[0] = -1;
  EXPECT_EQ(gpu, expectedGPU);

  // Smoothed: flat at 2, then a rise that never turns back.
  for (std::size_t i = 0; i < 10; ++i) EXPECT_DOUBLE_EQ(smooth[i], 2.0) << i;
  for (std::size_t i = 10; i < smooth.size(); ++i) {
    EXPECT_GT(smooth[i], smooth[i - 1]) << i;
    EXPECT_LT(smooth[i], 6.0) << i;
  }

  // What the ticks would say if each were taken for itself: the figures swing between nothing and
  // double, and smoothing leaves a seventh of the swing.
  Smoother naive(6);
  double lowest = 4;
  double highest = 0;
  for (std::size_t i = 0; i < 10; ++i) {
    const double watts = static_cast<double>(kSequence[i].cpuMillijoules) / 1000;
    EXPECT_TRUE(watts == 0 || watts == 4) << i;
    const double smoothed = naive.update("cpu", watts, 1);
    if (i < 6) continue;
    lowest = std::min(lowest, smoothed);
    highest = std::max(highest, smoothed);
  }
  EXPECT_GT(highest - lowest, 0.5);
}

// A machine of even power whose counters of millijoules are written every so many seconds, with a
// stamp, while those of nanojoules are written at each look.
class BatchingMachine {
 public:
  static constexpr double kCPU = 2;
  static constexpr double kANE = 0.25;
  static constexpr double kGPU = 0.5;

  BatchingMachine(double batchSeconds, double phase) : every_(batchSeconds), phase_(phase) {}

  // What the library says between two looks.
  EnergyInterval between(double earlier, double later, bool stampsTellOfLooks = false) const {
    const auto batch = [&](const char* name, double watts) {
      StampedChannel channel = counted(name, "mJ", 1e3 * watts, written(earlier), written(later));
      if (stampsTellOfLooks) stamp(channel, earlier, later);
      return channel;
    };
    return energyInterval({batch("CPU Energy", kCPU), batch("ANE0", kANE), batch("ISP0", 1),
                           counted("GPU Energy", "nJ", 1e9 * kGPU, earlier, later)},
                          1 / kTicksPerSecond);
  }

 private:
  static constexpr double kTicksPerSecond = 24e6;

  // When a batch was last written.
  double written(double uptime) const {
    return std::floor((uptime - phase_) / every_) * every_ + phase_;
  }
  static void stamp(StampedChannel& channel, double before, double after) {
    channel.before = static_cast<std::uint64_t>(std::llround(before * kTicksPerSecond));
    channel.after = static_cast<std::uint64_t>(std::llround(after * kTicksPerSecond));
  }
  static StampedChannel counted(const char* name, const char* unit, double perSecond, double before,
                                double after) {
    StampedChannel channel;
    channel.channel = {name, unit,
                       std::llround(perSecond * after) - std::llround(perSecond * before)};
    stamp(channel, before, after);
    return channel;
  }

  double every_;
  double phase_;
};

struct Rhythm {
  double tick;   // seconds
  double batch;  // seconds
};

class EnergyRhythmTest : public EnergyReaderTest, public testing::WithParamInterface<Rhythm> {};

// Whatever the ticks are and however the batches drift through them: from the first batch on every
// figure is what the machine draws, to the rounding of a millijoule.
TEST_P(EnergyRhythmTest, StampedBatchesGiveTheMachinesWatts) {
  const auto [tick, batch] = GetParam();
  const BatchingMachine machine(batch, 0.3);
  readAfter(0);
  bool hasBegun = false;
  for (int i = 1; i <= 200; ++i) {
    const double before = world.uptime;
    publish(machine.between(before, before + tick));
    const auto breakdown = readAfter(tick);
    if (!breakdown) {
      EXPECT_FALSE(hasBegun) << "tick " << i;
      continue;
    }
    hasBegun = true;
    EXPECT_NEAR(breakdown->cpu, BatchingMachine::kCPU, 0.002) << "tick " << i;
    EXPECT_NEAR(breakdown->neuralEngine, BatchingMachine::kANE, 0.002) << "tick " << i;
    EXPECT_NEAR(breakdown->gpu, BatchingMachine::kGPU, 1e-6) << "tick " << i;
  }
  EXPECT_TRUE(hasBegun);
}

INSTANTIATE_TEST_SUITE_P(Ticks, EnergyRhythmTest,
                         testing::Values(Rhythm{1, 2}, Rhythm{2, 2}, Rhythm{2.03, 2},
                                         Rhythm{2, 2.1}, Rhythm{2, 1.9}, Rhythm{1.3, 2.1},
                                         Rhythm{10, 2}, Rhythm{10.07, 2.1}, Rhythm{2, 0.5}));

// A block that is published at each look is followed at once, not with the CPU's next batch.
TEST_F(EnergyReaderTest, StampedBlocksKeepTheirOwnTime) {
  const auto both = [](std::int64_t cpu, double cpuSeconds, std::int64_t gpu) {
    return EnergyInterval{.channels = {{.name = "CPU Energy", .unit = "mJ", .value = cpu},
                                       {.name = "GPU Energy", .unit = "nJ", .value = gpu}},
                          .seconds = std::vector<double>{cpuSeconds, 1}};
  };
  publish(both(4000, 2, 500'000'000));
  publish(both(0, 0, 3'000'000'000));
  publish(both(12'000, 2, 0));
  readAfter(0);
  const std::pair<double, double> expected[] = {{2, 0.5}, {2, 3}, {6, 0}};
  for (const auto& [cpu, gpu] : expected) {
    const auto breakdown = readAfter(1);
    ASSERT_TRUE(breakdown);
    EXPECT_EQ(breakdown->cpu, cpu);
    EXPECT_EQ(breakdown->gpu, gpu);
  }
}

// Ticks of one second, batches of two, and stamps that tell when a counter was looked at. The first
// tick in which the CPU stands still gives them away; from then on the counters alone say what was
// published.
TEST_F(EnergyReaderTest, StampsThatMoveWhileTheCPUStandsAreNotListenedTo) {
  const BatchingMachine machine(2, 0.5);
  readAfter(0);
  for (int i = 1; i <= 40; ++i) {
    publish(machine.between(world.uptime, world.uptime + 1, true));
    const auto breakdown = readAfter(1);
    if (i <= 2) continue;
    ASSERT_TRUE(breakdown) << i;
    EXPECT_NEAR(breakdown->cpu, BatchingMachine::kCPU, 0.002) << i;
    EXPECT_NEAR(breakdown->gpu, BatchingMachine::kGPU, 1e-6) << i;
  }
}

TEST_F(EnergyReaderTest, AStampOfAnInstantProvesNothing) {
  publish(cpuMillijoules(0, 0.001));
  publish(cpuMillijoules(4000, 2.0));
  publish(cpuMillijoules(0, 0.0));
  readAfter(0);
  readAfter(0.001);
  EXPECT_EQ(cpuAfter(1), 2.0);
  EXPECT_EQ(cpuAfter(1), 2.0);
}

TEST_F(EnergyReaderTest, StampsOfAnotherNumberThanChannelsAreNone) {
  publish({.channels = {{.name = "CPU Energy", .unit = "mJ", .value = 8000}},
           .seconds = std::vector<double>{1, 1}});
  publish({.channels = {{.name = "CPU Energy", .unit = "mJ", .value = 8000}},
           .seconds = std::vector<double>{}});
  readAfter(0);
  EXPECT_EQ(cpuAfter(2), 4.0);
  EXPECT_EQ(cpuAfter(4), 2.0);
}

// Batches of 2.1 seconds under ticks of 2: one tick in 21 sees none. The batch that comes after it
// counts for two ticks, a dip to half, and nothing is zero.
TEST_F(EnergyReaderTest, BatchesSlightlyOutOfStepWithTheTicks) {
  const auto batchesBy = [](int tick) { return static_cast<int>(tick * 2 / 2.1); };
  readAfter(0);
  int silentTicks = 0;
  std::optional<int> sinceSilent;
  for (int tick = 1; tick <= 60; ++tick) {
    const int batches = batchesBy(tick) - batchesBy(tick - 1);
    publish(cpuMillijoules(4200 * batches));
    const auto cpu = cpuAfter(2);
    if (tick == 1) {
      EXPECT_EQ(cpu, std::nullopt);
      sinceSilent = 0;
      continue;
    }
    if (batches == 0) {
      silentTicks += 1;
      sinceSilent = 0;
      EXPECT_EQ(cpu, 2.1) << tick;
      continue;
    }
    EXPECT_EQ(cpu, sinceSilent == 0 ? 1.05 : 2.1) << tick;
    sinceSilent = 1;
  }
  EXPECT_EQ(silentTicks, 2);
}

}  // namespace
}  // namespace embrix
