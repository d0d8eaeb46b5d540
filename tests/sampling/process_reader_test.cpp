#include "sampling/process_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>

#include "fakes/scripted_host.h"

namespace embrix {
namespace {

class ProcessReaderTest : public testing::Test {
 protected:
  std::size_t pathsAsked() const {
    return static_cast<std::size_t>(std::count_if(
        world.log.begin(), world.log.end(),
        [](const std::string& call) { return call.starts_with("processes.executablePath"); }));
  }

  ScriptedHost world;
  Host host = world.host();
  ProcessReader reader{*host.processes};
};

TEST_F(ProcessReaderTest, PathOfADeadProcessIsNotInheritedWithItsPid) {
  world.add(10, "/opt/old").raw.startTime = 100;
  EXPECT_EQ(reader.read().at(0).name, "old");
  world.find(10)->raw.startTime = 200;
  world.find(10)->path = "/opt/new";
  EXPECT_EQ(reader.read().at(0).name, "new");
  EXPECT_EQ(reader.read().at(0).id, "10-200");
}

TEST_F(ProcessReaderTest, CachedNameStandsAfterAnExec) {
  world.add(10, "/bin/sh");
  EXPECT_EQ(reader.read().at(0).name, "sh");
  world.find(10)->path = "/opt/homebrew/bin/node";
  EXPECT_EQ(reader.read().at(0).name, "sh");
}

TEST_F(ProcessReaderTest, ProcessWithoutAPathHasTheKernelsShortName) {
  ScriptedProcess& process = world.add(10, "/x");
  process.path.reset();
  process.raw.commandName = "kernel_task_16ch";
  const ProcessSample& sample = reader.read().at(0);
  EXPECT_EQ(sample.name, "kernel_task_16ch");
  EXPECT_FALSE(sample.path);
}

TEST_F(ProcessReaderTest, AbsentPathIsAskedForOnlyOnce) {
  world.add(10, "/x").path.reset();
  reader.read();
  reader.read();
  EXPECT_EQ(pathsAsked(), 1u);
}

TEST_F(ProcessReaderTest, NameIsTheLastPieceOfThePathThatIsNotEmpty) {
  struct Case {
    const char* path;
    const char* expected;
  };
  const Case cases[] = {{"/opt/tool/", "tool"},
                        {"/opt//tool///", "tool"},
                        {"tool", "tool"},
                        {"///", "short"},
                        {"", "short"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    ScriptedHost other;
    ScriptedProcess& process = other.add(10, "/x");
    process.path = c.path;
    process.raw.commandName = "short";
    Host otherHost = other.host();
    EXPECT_EQ(ProcessReader(*otherHost.processes).read().at(0).name, c.expected);
  }
}

TEST_F(ProcessReaderTest, EmptyPathIsNone) {
  ScriptedProcess& process = world.add(10, "/x");
  process.path = "";
  process.raw.commandName = "short";
  const ProcessSample& sample = reader.read().at(0);
  EXPECT_EQ(sample.path, std::nullopt);
  EXPECT_EQ(sample.name, "short");
}

TEST_F(ProcessReaderTest, BytesThatAreNoUTF8AreRepaired) {
  ScriptedProcess& process = world.add(10, "/x");
  process.path = "/opt/caf\xe9";
  const ProcessSample& sample = reader.read().at(0);
  EXPECT_EQ(sample.name, "caf\uFFFD");
  EXPECT_EQ(*sample.path, "/opt/caf\uFFFD");
}

TEST_F(ProcessReaderTest, UnreadableUsageGivesZerosAndNoEnergy) {
  world.add(10, "/opt/a").raw.usage.reset();
  const ProcessSample& sample = reader.read().at(0);
  EXPECT_FALSE(sample.energyNJ);
  EXPECT_EQ(sample.cpuNS, 0u);
  EXPECT_EQ(sample.wakeups, 0u);
  EXPECT_EQ(sample.footprint, 0u);
}

TEST_F(ProcessReaderTest, TimesAreTurnedFromMachineUnits) {
  ScriptedHost arm;
  arm.ticksToNS = 125.0 / 3;
  arm.add(10, "/opt/a").raw.usage = RawUsage{.userTime = 2'400,
                                             .systemTime = 600,
                                             .packageIdleWakeups = 5,
                                             .interruptWakeups = 6,
                                             .footprint = 77,
                                             .energyNJ = 88};
  Host armHost = arm.host();
  ProcessReader armReader(*armHost.processes);
  const ProcessSample& sample = armReader.read().at(0);
  EXPECT_EQ(sample.cpuNS, 125'000u);
  EXPECT_EQ(sample.wakeups, 11u);
  EXPECT_EQ(sample.footprint, 77u);
  EXPECT_EQ(sample.energyNJ, 88u);
}

TEST_F(ProcessReaderTest, CountersThatFitNowhereDoNoHarm) {
  constexpr auto kMost = std::numeric_limits<std::uint64_t>::max();
  world.ticksToNS = 125.0 / 3;
  world.add(10, "/opt/a").raw.usage = RawUsage{kMost, kMost, kMost, 1, kMost, kMost};
  Host otherHost = world.host();
  ProcessReader other(*otherHost.processes);
  EXPECT_EQ(other.read().at(0).cpuNS, kMost);
}

TEST_F(ProcessReaderTest, DeadProcessesArePrunedOnceTheyOutnumberTheLiving) {
  for (std::int32_t pid = 1; pid <= 10; ++pid) world.add(pid, "/opt/a");
  reader.read();
  for (std::int32_t pid = 1; pid <= 5; ++pid) world.remove(pid);
  reader.read();
  EXPECT_EQ(reader.cachedPaths(), 10u) << "twice the living is not more than twice";
  world.remove(6);
  reader.read();
  EXPECT_EQ(reader.cachedPaths(), 4u);
}

TEST_F(ProcessReaderTest, RowThatStandsTwiceIsOneLivingProcess) {
  for (std::int32_t pid = 1; pid <= 3; ++pid) world.add(pid, "/opt/a");
  reader.read();
  world.remove(2);
  world.remove(3);
  world.processes.push_back(world.processes.at(0));
  EXPECT_EQ(reader.read().size(), 2u);
  EXPECT_EQ(reader.cachedPaths(), 1u);
}

}  // namespace
}  // namespace embrix
