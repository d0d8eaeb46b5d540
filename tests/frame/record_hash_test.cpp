#include "frame/record_hash.h"

#include <functional>
#include <vector>

#include <gtest/gtest.h>

namespace embrix {
namespace {

template <typename Record>
using Changes = std::vector<std::function<void(Record&)>>;

// A copy is equal and has the same hash; each change makes it unequal and gives another hash.
template <typename Record>
void expectEveryFieldToCount(const Record& record, const Changes<Record>& changes) {
  const std::hash<Record> hash;
  const Record copy = record;
  EXPECT_EQ(copy, record);
  EXPECT_EQ(hash(copy), hash(record));
  for (std::size_t i = 0; i < changes.size(); ++i) {
    Record changed = record;
    changes[i](changed);
    EXPECT_NE(changed, record) << "change " << i;
    EXPECT_NE(hash(changed), hash(record)) << "change " << i;
  }
}

const AppInfo kApp{.name = "Safari", .bundleID = "com.apple.Safari", .bundlePath = "/Safari.app"};
const GroupIdentity kIdentity{
    .key = "com.apple.Safari", .name = "Safari", .rootPID = 7, .app = kApp};
const ProcessRow kRow{.id = "7-1000",
                      .pid = 7,
                      .uid = 501,
                      .name = "Safari",
                      .path = "/Safari.app/Safari",
                      .watts = 1.5,
                      .cpuPercent = 20,
                      .wakeupsPerSecond = 3,
                      .memoryBytes = 4096,
                      .gpuWatts = 0.5};

TEST(RecordHashTest, OfAnApplication) {
  expectEveryFieldToCount<AppInfo>(
      kApp, {[](AppInfo& app) { app.name = "Mail"; }, [](AppInfo& app) { app.bundleID.reset(); },
             [](AppInfo& app) { app.bundlePath = "/Mail.app"; }});
}

TEST(RecordHashTest, OfAnIdentity) {
  expectEveryFieldToCount<GroupIdentity>(
      kIdentity,
      {[](GroupIdentity& one) { one.key = "com.apple.mail"; },
       [](GroupIdentity& one) { one.name = "Mail"; }, [](GroupIdentity& one) { one.rootPID = 8; },
       [](GroupIdentity& one) { one.app.reset(); },
       [](GroupIdentity& one) { one.app->name = "Mail"; }});
}

TEST(RecordHashTest, OfARow) {
  expectEveryFieldToCount<ProcessRow>(
      kRow,
      {[](ProcessRow& row) { row.id = "7-1001"; }, [](ProcessRow& row) { row.pid = 8; },
       [](ProcessRow& row) { row.uid = 0; }, [](ProcessRow& row) { row.name = "Mail"; },
       [](ProcessRow& row) { row.path.reset(); }, [](ProcessRow& row) { row.watts = 1.25; },
       [](ProcessRow& row) { row.cpuPercent = 21; },
       [](ProcessRow& row) { row.wakeupsPerSecond = 4; },
       [](ProcessRow& row) { row.memoryBytes = 8192; }, [](ProcessRow& row) { row.gpuWatts = 0; },
       [](ProcessRow& row) { std::swap(row.watts, row.cpuPercent); }});
}

TEST(RecordHashTest, OfAGroup) {
  AppGroup group{.identity = kIdentity, .watts = 3, .cpuPercent = 40, .wakeupsPerSecond = 6};
  group.processes = {kRow, kRow};
  group.processes[1].id = "8-1000";
  expectEveryFieldToCount<AppGroup>(
      group,
      {[](AppGroup& one) { one.identity.rootPID = 8; }, [](AppGroup& one) { one.watts = 4; },
       [](AppGroup& one) { one.cpuPercent = 41; }, [](AppGroup& one) { one.wakeupsPerSecond = 7; },
       [](AppGroup& one) { one.processes[1].memoryBytes = 0; },
       [](AppGroup& one) { one.processes.pop_back(); },
       [](AppGroup& one) { std::swap(one.processes[0], one.processes[1]); }});
}

TEST(RecordHashTest, OfASample) {
  const ProcessSample sample{.pid = 7,
                             .ppid = 1,
                             .uid = 501,
                             .name = "Safari",
                             .path = "/Safari.app/Safari",
                             .startTime = 1000,
                             .energyNJ = 5,
                             .cpuNS = 6,
                             .wakeups = 7,
                             .footprint = 8,
                             .id = "7-1000"};
  expectEveryFieldToCount<ProcessSample>(
      sample,
      {[](ProcessSample& one) { one.pid = 8; }, [](ProcessSample& one) { one.ppid = 2; },
       [](ProcessSample& one) { one.uid = 0; }, [](ProcessSample& one) { one.name = "Mail"; },
       [](ProcessSample& one) { one.path.reset(); },
       [](ProcessSample& one) { one.startTime = 1001; },
       [](ProcessSample& one) { one.energyNJ.reset(); }, [](ProcessSample& one) { one.cpuNS = 0; },
       [](ProcessSample& one) { one.wakeups = 0; }, [](ProcessSample& one) { one.footprint = 0; },
       [](ProcessSample& one) { one.id = "7-1001"; }});
}

TEST(RecordHashTest, OfABatteryReading) {
  const BatteryReading battery{.systemWatts = 12.5,
                               .percent = 80,
                               .minutesRemaining = 300,
                               .isCharging = false,
                               .externalConnected = false,
                               .healthPercent = 90,
                               .cycleCount = 291,
                               .remainingWh = 40.5,
                               .fullWh = 52};
  expectEveryFieldToCount<BatteryReading>(
      battery, {[](BatteryReading& one) { one.systemWatts.reset(); },
                [](BatteryReading& one) { one.percent = 79; },
                [](BatteryReading& one) { one.minutesRemaining.reset(); },
                [](BatteryReading& one) { one.isCharging = true; },
                [](BatteryReading& one) { one.externalConnected = true; },
                [](BatteryReading& one) { one.healthPercent = 91; },
                [](BatteryReading& one) { one.cycleCount = 292; },
                [](BatteryReading& one) { one.remainingWh = 40; },
                [](BatteryReading& one) { one.fullWh.reset(); }});
}

TEST(RecordHashTest, ZerosOfEitherSignAreEqual) {
  ProcessRow plus = kRow;
  ProcessRow minus = kRow;
  plus.watts = 0.0;
  minus.watts = -0.0;
  EXPECT_EQ(plus, minus);
  EXPECT_EQ(std::hash<ProcessRow>{}(plus), std::hash<ProcessRow>{}(minus));
}

}  // namespace
}  // namespace embrix
