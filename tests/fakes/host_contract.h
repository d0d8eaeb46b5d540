// What every host promises, whatever machine stands behind it. Instantiate it in a test of the
// host:
//
//   INSTANTIATE_TEST_SUITE_P(Scripted, HostContract, testing::Values(makeHost));
//
// Answers of a whole tick are taken by interview(), so that a recorded machine has been asked the
// same before.
#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "fakes/interview.h"

namespace embrix {

struct StandingHost {
  std::shared_ptr<void> world;  // whatever the host needs to live
  Host host;
  Questions questions;
};

class HostContract : public testing::TestWithParam<std::function<StandingHost()>> {
 protected:
  StandingHost standing = GetParam()();
  Host& host = standing.host;

  TickAnswers nextTick() { return interview(host, standing.questions); }
};

// A pid that no system hands out.
inline constexpr std::int32_t kNoPID = 2147483647;

TEST_P(HostContract, EverySourceIsThere) {
  EXPECT_FALSE(host.name.empty());
  EXPECT_TRUE(host.clock && host.processes && host.processDetails && host.responsibility);
  EXPECT_TRUE(host.applications && host.energy && host.battery && host.temperatures && host.smc);
  EXPECT_TRUE(host.thermalState && host.gpu && host.memory && host.assertions && host.powerLog);
  EXPECT_TRUE(host.commands && host.files);
}

TEST_P(HostContract, ConstantsStayTheSame) {
  const auto constants = [&] {
    return std::make_tuple(host.processes->ticksToNS(), host.battery->hasService(),
                           host.temperatures->sensors(), host.smc->isOpen(),
                           host.memory->pageSize(), host.memory->physicalBytes());
  };
  const auto before = constants();
  nextTick();
  EXPECT_EQ(constants(), before);
  nextTick();
  EXPECT_EQ(constants(), before);
}

TEST_P(HostContract, UptimeNeverGoesBack) {
  double before = host.clock->uptime();
  for (int tick = 0; tick < 3; ++tick) {
    for (const double uptime : nextTick().uptimes) {
      EXPECT_GE(uptime, before);
      before = uptime;
    }
  }
}

TEST_P(HostContract, AReadTableReplacesWhatStoodInIt) {
  nextTick();
  std::vector<RawProcess> once;
  host.processes->read(once);
  std::vector<RawProcess> overOld(100000);
  host.processes->read(overOld);
  EXPECT_LT(overOld.size(), 100000U);
  EXPECT_EQ(once.empty(), overOld.empty());
}

TEST_P(HostContract, TheTableHasEachPIDOnce) {
  const TickAnswers answers = nextTick();
  std::set<std::int32_t> pids;
  for (const RawProcess& process : answers.table) {
    EXPECT_GE(process.pid, 0);
    EXPECT_TRUE(pids.insert(process.pid).second) << process.pid;
    EXPECT_LE(process.commandName.size(), 16U);
  }
  EXPECT_FALSE(pids.empty());
}

TEST_P(HostContract, ListeningPortsAreAscendingAndInRange) {
  for (const auto& [pid, ports] : nextTick().listening) {
    for (std::size_t i = 0; i < ports.size(); ++i) {
      EXPECT_GE(ports[i].port, 1);
      EXPECT_LE(ports[i].port, 65535);
      EXPECT_LE(ports[i == 0 ? 0 : i - 1].port, ports[i].port);
    }
  }
}

TEST_P(HostContract, AProcessThatIsNotThereIsAbsentEverywhere) {
  nextTick();
  for (const std::int32_t pid : {kNoPID, -1}) {
    EXPECT_EQ(host.processes->executablePath(pid), std::nullopt);
    EXPECT_TRUE(host.processDetails->arguments(pid).empty());
    EXPECT_EQ(host.processDetails->directory(pid), std::nullopt);
    EXPECT_TRUE(host.processDetails->listening(pid).empty());
  }
}

TEST_P(HostContract, WhatHasNoNameThereIsAbsent) {
  nextTick();
  EXPECT_EQ(host.applications->bundle("/no/such/Thing.app"), std::nullopt);
  EXPECT_EQ(host.applications->byExecutable("/no/such/thing"), std::nullopt);
  EXPECT_EQ(host.applications->pathForIdentifier("no.such.thing"), std::nullopt);
  EXPECT_EQ(host.commands->output("/no/such/program", {}), std::nullopt);
  EXPECT_FALSE(host.commands->start("/no/such/program", {}));
  EXPECT_EQ(host.files->read("/no/such/file"), std::nullopt);
}

TEST_P(HostContract, ASensorOutsideTheListIsAbsent) {
  nextTick();
  EXPECT_EQ(host.temperatures->read(host.temperatures->sensors().size()), std::nullopt);
}

TEST_P(HostContract, TheFirstEnergySampleHasNoInterval) {
  EXPECT_EQ(nextTick().energyInterval, std::nullopt);
}

TEST_P(HostContract, AMachineWithoutBatteryHasNoRegistry) {
  const TickAnswers answers = nextTick();
  EXPECT_TRUE(host.battery->hasService() || !answers.batteryRegistry);
}

TEST_P(HostContract, AClosedControllerAnswersNothing) {
  const TickAnswers answers = nextTick();
  for (const auto& [key, output] : answers.smc) {
    EXPECT_TRUE(host.smc->isOpen() || !output) << key;
  }
}

}  // namespace embrix
