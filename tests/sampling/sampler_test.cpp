#include "sampling/sampler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "fakes/scripted_host.h"

namespace embrix {
namespace {

class SamplerTest : public testing::Test {
 protected:
  // Adds a process that has used so much energy and time so far.
  RawProcess& add(std::int32_t pid, const std::string& path, std::int32_t ppid = 1) {
    RawProcess& raw = world.add(pid, path, ppid).raw;
    raw.usage = RawUsage{.energyNJ = 0};
    return raw;
  }
  // Lets a process draw so many watts, on one whole core, for so many seconds.
  void work(std::int32_t pid, double watts, double seconds) {
    RawUsage& usage = *world.find(pid)->raw.usage;
    usage.energyNJ = *usage.energyNJ + static_cast<std::uint64_t>(watts * seconds * 1e9);
    usage.userTime += static_cast<std::uint64_t>(seconds * 1e9);
  }
  Frame tick(Sampler& sampler, double seconds = 2) {
    world.uptime += seconds;
    world.wallTime += seconds;
    auto frame = sampler.next();
    EXPECT_TRUE(frame);
    return frame.value_or(Frame());
  }
  std::size_t asked(const std::string& call) const {
    return static_cast<std::size_t>(
        std::count_if(world.log.begin(), world.log.end(),
                      [&](const std::string& entry) { return entry.starts_with(call); }));
  }
  static const AppGroup* group(const Frame& frame, std::string_view key) {
    for (const AppGroup& each : frame.groups) {
      if (each.identity.key == key) return &each;
    }
    return nullptr;
  }

  ScriptedHost world;
  Host host = world.host();
};

TEST_F(SamplerTest, FirstTickOnlyTakesABaselineAndTheSecondHasScanned) {
  add(10, "/opt/homebrew/bin/foo");
  world.find(10)->listening = {{3000, true}};
  world.assertions = {
      {10, {{{"AssertType", "PreventUserIdleSystemSleep"}, {"Process Name", "foo"}}}}};
  Sampler sampler(host);
  EXPECT_FALSE(sampler.next());
  EXPECT_EQ(asked("assertions"), 0u);
  EXPECT_EQ(asked("processDetails"), 0u);
  EXPECT_EQ(asked("battery.registry"), 0u);
  const Frame frame = tick(sampler);
  ASSERT_EQ(frame.servers.size(), 1u);
  EXPECT_EQ(frame.servers.at(0).title, "foo");
  ASSERT_EQ(frame.sleepBlockers.size(), 1u);
  EXPECT_EQ(frame.sleepBlockers.at(0).pid, 10);
}

TEST_F(SamplerTest, TickReadsItsSourcesInTheirOrder) {
  add(10, "/opt/a");
  world.hasBattery = true;
  world.sensors = {{"PMU tdie1", 60.0}};
  Sampler sampler(host);
  const auto callsOfOneTick = [&] {
    world.log.clear();
    sampler.next();
    std::string calls;
    for (const std::string& entry : world.log) calls += entry.substr(0, entry.find(' ')) + "\n";
    return calls;
  };
  EXPECT_EQ(callsOfOneTick(), R"(clock.beginTick
clock.uptime
processes.read
processes.executablePath
energy.sample
clock.uptime
gpu.clients
)");
  EXPECT_EQ(callsOfOneTick(), R"(clock.beginTick
clock.uptime
processes.read
energy.sample
clock.uptime
energy.interval
gpu.clients
applications.byExecutable
responsibility.responsiblePID
clock.wallTime
processDetails.beginScan
processDetails.arguments
processDetails.directory
processDetails.listening
assertions.read
clock.wallTime
battery.hasService
battery.registry
battery.powerSources
temperatures.read
thermalState.read
gpu.performanceStatistics
memory.counters
smc.call
)");
}

TEST_F(SamplerTest, ProcessThatAppearsBetweenTwoTicksShowsInTheNextFrame) {
  add(10, "/opt/a");
  Sampler sampler(host);
  sampler.next();
  add(11, "/opt/b");
  EXPECT_FALSE(group(tick(sampler), "/opt/b"));
  EXPECT_TRUE(group(tick(sampler), "/opt/b"));
}

TEST_F(SamplerTest, ProcessThatComesBackUnderItsIdIsNotSmoothedAgainstItsPast) {
  add(10, "/opt/a");
  add(11, "/opt/b");
  const ScriptedProcess kept = *world.find(11);
  Sampler sampler(host);
  sampler.next();
  work(11, 100, 2);
  EXPECT_DOUBLE_EQ(group(tick(sampler), "/opt/b")->watts, 100);
  world.remove(11);
  EXPECT_FALSE(group(tick(sampler), "/opt/b"));
  world.processes.push_back(kept);
  EXPECT_FALSE(group(tick(sampler), "/opt/b")) << "there was nothing to compare with";
  work(11, 3, 2);
  EXPECT_DOUBLE_EQ(group(tick(sampler), "/opt/b")->watts, 3);
}

TEST_F(SamplerTest, SmoothingFollowsTheTimeConstant) {
  add(10, "/opt/a");
  Sampler sampler(host);
  sampler.next();
  EXPECT_DOUBLE_EQ(group(tick(sampler, 6), "/opt/a")->watts, 0);
  work(10, 10, 6);
  EXPECT_NEAR(group(tick(sampler, 6), "/opt/a")->watts, 10 * (1 - std::exp(-1)), 1e-9);
}

TEST_F(SamplerTest, GPUWattsGoToWhoUsedTheProcessorAndFadeWithoutABreakdown) {
  add(10, "/opt/a");
  add(11, "/opt/b");
  world.energyIntervals = {{{{"GPU Energy", "nJ", 0}}, std::nullopt},
                           {{{"GPU Energy", "nJ", 8'000'000'000}}, std::nullopt}};
  world.gpuClients = {{"pid 10, a", {{100}}}, {"pid 11, b", {{100}}}};
  Sampler sampler(host);
  sampler.next();
  tick(sampler);
  world.gpuClients = {{"pid 10, a", {{130}}}, {"pid 11, b", {{110}}}};
  Frame frame = tick(sampler);
  ASSERT_TRUE(frame.breakdown);
  EXPECT_DOUBLE_EQ(frame.breakdown->gpu, 4);
  const double step = 1 - std::exp(-2.0 / 6);
  EXPECT_NEAR(group(frame, "/opt/a")->processes.at(0).gpuWatts, 3 * step, 1e-9);
  EXPECT_NEAR(group(frame, "/opt/a")->watts, 3 * step, 1e-9) << "not added a second time";
  EXPECT_NEAR(group(frame, "/opt/b")->processes.at(0).gpuWatts, 1 * step, 1e-9);

  world.hasEnergyCounters = false;
  world.gpuClients = {{"pid 10, a", {{230}}}, {"pid 11, b", {{110}}}};
  frame = tick(sampler, 60);
  EXPECT_FALSE(frame.breakdown);
  EXPECT_NEAR(group(frame, "/opt/a")->processes.at(0).gpuWatts, 0, 1e-3);
}

TEST_F(SamplerTest, GroupsAndTheirRowsComeInDescendingWattsAndSumUp) {
  add(10, "/opt/small");
  add(20, "/opt/big");
  add(21, "/opt/child", 20);
  add(22, "/opt/child", 20);
  Sampler sampler(host);
  sampler.next();
  work(10, 1, 2);
  work(20, 2, 2);
  work(22, 5, 2);
  const Frame frame = tick(sampler);
  ASSERT_EQ(frame.groups.size(), 2u);
  const AppGroup& big = frame.groups.at(0);
  EXPECT_EQ(big.identity.key, "/opt/big");
  EXPECT_DOUBLE_EQ(big.watts, 7);
  EXPECT_DOUBLE_EQ(big.cpuPercent, 200);
  ASSERT_EQ(big.processes.size(), 3u);
  EXPECT_EQ(big.processes.at(0).pid, 22);
  EXPECT_EQ(big.processes.at(1).pid, 20);
  EXPECT_EQ(big.processes.at(2).pid, 21);
  EXPECT_EQ(frame.groups.at(1).identity.key, "/opt/small");
}

TEST_F(SamplerTest, EqualRowsAndGroupsKeepTheOrderOfTheProcessTable) {
  for (const std::int32_t pid : {30, 10, 20}) add(pid, "/opt/" + std::to_string(pid));
  add(32, "/opt/kid", 30);
  add(31, "/opt/kid", 30);
  Sampler sampler(host);
  sampler.next();
  const Frame frame = tick(sampler);
  ASSERT_EQ(frame.groups.size(), 3u);
  EXPECT_EQ(frame.groups.at(0).identity.key, "/opt/30");
  EXPECT_EQ(frame.groups.at(1).identity.key, "/opt/10");
  EXPECT_EQ(frame.groups.at(2).identity.key, "/opt/20");
  ASSERT_EQ(frame.groups.at(0).processes.size(), 3u);
  EXPECT_EQ(frame.groups.at(0).processes.at(1).pid, 32);
  EXPECT_EQ(frame.groups.at(0).processes.at(2).pid, 31);
}

TEST_F(SamplerTest, IntervalOfZeroGivesNoGroupsAndForgetsTheSmoothing) {
  add(10, "/opt/a");
  Sampler sampler(host);
  sampler.next();
  work(10, 50, 2);
  EXPECT_DOUBLE_EQ(group(tick(sampler), "/opt/a")->watts, 50);
  EXPECT_TRUE(tick(sampler, 0).groups.empty());
  work(10, 4, 2);
  EXPECT_DOUBLE_EQ(group(tick(sampler), "/opt/a")->watts, 4);
}

TEST_F(SamplerTest, ThrottleMakesEveryFrameSerious) {
  Sampler sampler(host, {.throttle = true});
  sampler.next();
  EXPECT_EQ(tick(sampler).thermalState, ThermalState::serious);
  world.thermalState = ThermalState::critical;
  EXPECT_EQ(tick(sampler).thermalState, ThermalState::serious);
  Sampler plain(host);
  plain.next();
  EXPECT_EQ(tick(plain).thermalState, ThermalState::critical);
}

TEST_F(SamplerTest, ForgottenScanComesAgainAfterThirtySecondsOfUptime) {
  add(10, "/opt/a");
  world.uptime = 98;
  Sampler sampler(host);
  sampler.next();
  tick(sampler, 2);  // uptime 100
  EXPECT_EQ(asked("processDetails.listening"), 1u);
  tick(sampler, 29.9);
  EXPECT_EQ(asked("processDetails.listening"), 1u);
  world.uptime = 128;
  tick(sampler, 2);  // uptime 130
  EXPECT_EQ(asked("processDetails.listening"), 2u);
}

TEST_F(SamplerTest, BlockersAreReadAgainAfterTenSecondsOfUptime) {
  world.uptime = 98;
  Sampler sampler(host);
  sampler.next();
  tick(sampler, 2);
  EXPECT_EQ(asked("assertions"), 1u);
  tick(sampler, 9.9);
  EXPECT_EQ(asked("assertions"), 1u);
  world.uptime = 108;
  tick(sampler, 2);
  EXPECT_EQ(asked("assertions"), 2u);
}

TEST_F(SamplerTest, RowTellsItsProcess) {
  RawProcess& raw = add(10, "/opt/a");
  raw.uid = 77;
  raw.startTime = 1234;
  raw.usage->footprint = 4096;
  Sampler sampler(host);
  sampler.next();
  work(10, 3, 2);
  raw.usage->packageIdleWakeups = 10;
  raw.usage->interruptWakeups = 4;
  raw.usage->footprint = 8192;
  const Frame frame = tick(sampler);
  ASSERT_EQ(frame.groups.size(), 1u);
  EXPECT_DOUBLE_EQ(frame.groups.at(0).wakeupsPerSecond, 7);
  EXPECT_EQ(frame.groups.at(0).processes, (std::vector<ProcessRow>{{.id = "10-1234",
                                                                    .pid = 10,
                                                                    .uid = 77,
                                                                    .name = "a",
                                                                    .path = "/opt/a",
                                                                    .watts = 3,
                                                                    .cpuPercent = 100,
                                                                    .wakeupsPerSecond = 7,
                                                                    .memoryBytes = 8192,
                                                                    .gpuWatts = 0}}));
}

TEST_F(SamplerTest, FirstProcessOfAKeyThatHasARateNamesTheGroup) {
  add(10, "/opt/mds");
  Sampler sampler(host);
  sampler.next();
  // Before the one that was there, and new: it has no rate in this frame.
  add(9, "/opt/mds_stores");
  std::swap(world.processes.at(0), world.processes.at(1));
  const AppGroup* one = nullptr;
  Frame frame = tick(sampler);
  ASSERT_TRUE(one = group(frame, "named:Spotlight indexing"));
  EXPECT_EQ(one->identity.rootPID, 10);
  frame = tick(sampler);
  ASSERT_TRUE(one = group(frame, "named:Spotlight indexing"));
  EXPECT_EQ(one->identity.rootPID, 9);
}

TEST_F(SamplerTest, CadencesDoNotFollowTheWallClock) {
  add(10, "/opt/a");
  Sampler sampler(host);
  sampler.next();
  tick(sampler);
  world.wallTime += 86400;
  tick(sampler);
  EXPECT_EQ(asked("processDetails.listening"), 1u);
  EXPECT_EQ(asked("assertions"), 1u);
  world.wallTime -= 2 * 86400;
  const Frame frame = tick(sampler, 30);
  EXPECT_EQ(asked("processDetails.listening"), 2u);
  EXPECT_EQ(asked("assertions"), 2u);
  EXPECT_EQ(frame.date, world.wallTime);
}

TEST_F(SamplerTest, EmptyProcessTableStillGivesAFrame) {
  Sampler sampler(host);
  sampler.next();
  const Frame frame = tick(sampler);
  EXPECT_TRUE(frame.groups.empty());
  EXPECT_EQ(frame.date, world.wallTime);
  EXPECT_EQ(asked("assertions"), 1u);
}

TEST_F(SamplerTest, MachineWithoutAnySourceGivesAFrameWithNothingInIt) {
  Host nothing = absentHost();
  Sampler sampler(nothing);
  EXPECT_FALSE(sampler.next());
  EXPECT_EQ(sampler.next(), Frame());
}

TEST_F(SamplerTest, CoresAreTrimmedToThoseOfTheChip) {
  host.machine.performanceCores = 1;
  host.machine.efficiencyCores = 2;
  const EnergyInterval interval{{{"CPU Energy", "mJ", 1},
                                 {"PACC0_CPU0", "mJ", 2000},
                                 {"PACC0_CPU1", "mJ", 4000},
                                 {"EACC_CPU0", "mJ", 200},
                                 {"EACC_CPU1", "mJ", 400},
                                 {"EACC_CPU2", "mJ", 600}},
                                std::nullopt};
  world.energyIntervals = {interval, interval};
  Sampler sampler(host);
  sampler.next();
  const Frame frame = tick(sampler);
  ASSERT_TRUE(frame.breakdown);
  std::vector<std::string> names;
  for (const auto& core : frame.breakdown->cores) names.push_back(core.name);
  EXPECT_EQ(names, (std::vector<std::string>{"P0", "E0", "E1"}));
}

TEST_F(SamplerTest, UnknownCoreCountsLeaveNoCores) {
  host.machine.performanceCores.reset();
  host.machine.efficiencyCores.reset();
  world.energyIntervals = {{{{"CPU Energy", "mJ", 1}, {"PACC0_CPU0", "mJ", 2000}}, std::nullopt}};
  Sampler sampler(host);
  sampler.next();
  const Frame frame = tick(sampler);
  ASSERT_TRUE(frame.breakdown);
  EXPECT_TRUE(frame.breakdown->cores.empty());
}

// A frame that was handed back lends its storage and nothing else: on a machine of random comings
// and goings, a sampler that is given its frames back says the same as one that is not.
TEST_F(SamplerTest, RecycledFramesLeaveNoTrace) {
  std::mt19937 random(7);
  Sampler plain(host);
  Sampler recycling(host);
  std::optional<Frame> before;
  for (std::int32_t tickNumber = 0; tickNumber < 60; ++tickNumber) {
    const auto pid = static_cast<std::int32_t>(10 + random() % 30);
    if (world.find(pid)) {
      if (random() % 3 == 0) {
        world.remove(pid);
      } else {
        work(pid, static_cast<double>(random() % 9), 2);
      }
    } else {
      add(pid, "/opt/" + std::to_string(random() % 5), static_cast<std::int32_t>(random() % 40));
    }
    world.uptime += 2;
    auto expected = plain.next();
    auto frame = recycling.next();
    EXPECT_EQ(frame, expected);
    if (before) recycling.recycle(std::move(*before));
    before = std::move(frame);
  }
}

}  // namespace
}  // namespace embrix
