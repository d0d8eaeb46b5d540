// A laptop that has everything, recorded and told again by the built program.

#include <memory>
#include <string>
#include <utility>
#include <variant>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/json.h"
#include "entry/dump.h"
#include "fakes/scripted_host.h"
#include "hosts/replay/recording_host.h"
#include "hosts/replay/recording_writer.h"
#include "program.h"

namespace embrix {
namespace {

void fillProcesses(ScriptedHost& world) {
  world.bundles["/Applications/Xcode.app"] = {
      .displayName = "Xcode", .name = "Xcode", .identifier = "com.apple.dt.Xcode"};
  world.add(412, "/Applications/Xcode.app/Contents/MacOS/Xcode");
  ScriptedProcess& server = world.add(77, "/opt/homebrew/bin/node");
  server.arguments = {"node", "/Users/ada/code/shop/node_modules/.bin/vite", "dev"};
  server.directory = "/Users/ada/code/shop";
  server.listening = {{5173, true}};
  server.raw.startTime = static_cast<std::uint64_t>(world.wallTime + 2 - 61 * 60);
  world.gpuClients = {{.creator = "pid 412, Xcode", .accumulatedTimes = {{1'000'000}}},
                      {.creator = "pid 412, Xcode", .accumulatedTimes = {{500, std::nullopt}}}};
  world.onTick = [&world] {
    RawUsage& usage = *world.find(412)->raw.usage;
    usage.energyNJ = usage.energyNJ.value_or(0) + 6'200'000'000;  // 3.1 W over 2 seconds
    usage.userTime += 1'000'000'000;
    *world.gpuClients[1].accumulatedTimes->at(0) += 40'000'000;
  };
}

void fillPower(ScriptedHost& world) {
  world.hasBattery = true;
  world.batteryRegistry = PropertyMap{
      {"ExternalConnected", false},
      {"Voltage", 12'000},
      {"InstantAmperage", std::int64_t{-1'100}},
      {"PowerTelemetryData", PropertyMap{{"SystemPowerIn", 0}, {"SystemLoad", 12'480}}}};
  world.powerSources = {PropertyMap{{"Type", "InternalBattery"},
                                    {"Power Source State", "Battery Power"},
                                    {"Is Charging", false},
                                    {"Current Capacity", 71},
                                    {"Time to Empty", 214}}};
  // The CPU's and its cores' counters tell of two seconds, the graphics processor's of one.
  world.energyIntervals = {{.channels = {{"CPU Energy", "mJ", 12'000},
                                         {"PACC0_CPU0", "mJ", 7'000},
                                         {"PACC0_CPU1", "mJ", 3'000},
                                         {"EACC0_CPU0", "mJ", 500},
                                         {"ANE", "mJ", 500},
                                         {"DRAM", "mJ", 1'500},
                                         {"AMCC", "mJ", 300},
                                         {"DCS", "mJ", 200},
                                         {"DISP", "uJ", 1'000'000},
                                         {"GPU Energy", "nJ", 1'500'000'000}},
                            .seconds = std::vector<double>{2, 2, 2, 2, 2, 2, 2, 2, 2, 1}}};
  world.assertions = {
      {.pid = 5143,
       .assertions = {PropertyMap{{"Process Name", "Amphetamine"},
                                  {"AssertType", "PreventUserIdleSystemSleep"},
                                  {"AssertName", "Single-Use - System"},
                                  {"AssertStartWhen", PropertyDate{1'749'990'000}}},
                      PropertyMap{{"Process Name", "Amphetamine"},
                                  {"AssertType", "PreventUserIdleDisplaySleep"},
                                  {"AssertName", "Single-Use - Display"}}}},
      {.pid = 101,
       .assertions = {PropertyMap{{"Process Name", "powerd"},
                                  {"AssertType", "PreventUserIdleSystemSleep"}}}},
      {.pid = 909,
       .assertions = {PropertyMap{{"Process Name", "caffeinate"},
                                  {"AssertType", "PreventSystemSleep"},
                                  {"AssertStartWhen", PropertyDate{1'749'000'000}}}}}};
  world.powerLog =
      "Time stamp                Domain              \tMessage\n"
      "2025-06-15 23:00:00 +0200 Sleep               \tEntering Sleep state due to 'Clamshell "
      "Sleep':TCPKeepAlive=active Using Batt (Charge:90%)\n"
      "2025-06-15 23:00:01 +0200 Wake Requests       \t[*process=dasd request=SleepService]\n"
      "2025-06-16 03:00:00 +0200 DarkWake            \tDarkWake from Deep Idle [CDNP] : due to "
      "RTC/Maintenance Using BATT (Charge:88%) 45 secs\n"
      "2025-06-16 03:00:46 +0200 Sleep               \tEntering Sleep state Using Batt\n"
      "2025-06-16 07:00:00 +0200 Wake                \tWake from Deep Idle [CDNVA] : due to lid "
      "Using BATT (Charge:84%)\n";
}

void fillReadings(ScriptedHost& world) {
  world.sensors = {{"gas gauge battery", 71}, {"PMU tdie1", 58.25}, {"PMU2 tdie4", 61.4}};
  world.smcKeys["FNum"] = {"ui8 ", {2}};
  world.smcKeys["F0Ac"] = {"fpe2", {0x1A, 0xE0}};
  world.smcKeys["F0Mx"] = {"ui16", {0x17, 0x70}};
  world.smcKeys["F1Ac"] = {"flt ", {0, 0x50, 0x1C, 0x45}};  // 2501
  world.gpuStatistics = PropertyMap{{"Device Utilization %", 42}};
  world.memoryCounters = MemoryCounters{.internalPages = 400'000,
                                        .purgeablePages = 10'176,
                                        .wiredPages = 100'000,
                                        .compressorPages = 100'000};
  world.memoryFreeLevel = 83;
}

class ReplayedMachineTest : public ProgramTest {
 protected:
  ReplayedMachineTest() {
    fillProcesses(world_);
    fillPower(world_);
    fillReadings(world_);
    auto opened = RecordingWriter::open(path());
    const auto writer = std::get<std::shared_ptr<RecordingWriter>>(std::move(opened));
    {
      Host recorded = recordingHost(world_.host(), writer);
      live_ = dump(recorded, {"embrix", "--dump"});
    }
    EXPECT_EQ(writer->problem(), "");
  }

  std::string path() const { return folder_ / "laptop.jsonl"; }

  ScriptedHost world_;
  std::string live_;
};

TEST_F(ReplayedMachineTest, EveryBlockOfTheReportStandsInItsOrder) {
  const Outcome outcome = embrix({"--replay", path(), "--dump"});
  EXPECT_EQ(outcome.exitStatus, 0);
  EXPECT_EQ(outcome.complaints, "");
  EXPECT_EQ(outcome.output,
            "system 12.5 W  processes 4.6 W  temp 61°C\n"
            "soc: cpu 6.00 W  gpu 1.50 W  ane 0.25 W  memory 1.00 W  display 0.50 W  cores 3\n"
            "gpu 42%  memory 9.0 / 16 GB  pressure 17%\n"
            "fans 1720/6000 rpm  2501/0 rpm\n"
            "server: vite dev · shop · ports [5173] · on network [5173] · pid 77\n"
            "awake: caffeinate (909) · Keeps your Mac awake · \n"
            "awake: Amphetamine (5143) · Keeps the display on · Single-Use - System, Single-Use - "
            "Display\n"
            "last sleep: 8h 0m · 1 dark wakes · 45s awake · charge 90→84% · causes Scheduled "
            "maintenance ×1 · asked by Background tasks ×1\n"
            "forgotten: vite dev · shop · ports [5173] · up 61m · 1 proc\n"
            "   4.60 W   50.0%  Xcode  (GPU 1.50 W)\n"
            "       4.60 W   50.0%  Xcode (412)\n"
            "   0.00 W    0.0%  node\n");
  EXPECT_EQ(outcome.output, live_);
}

TEST_F(ReplayedMachineTest, TheSameMachineInJSON) {
  const Outcome outcome = embrix({"--json", "--replay", path()});
  EXPECT_EQ(outcome.exitStatus, 0);
  const Json report = parseJson(outcome.output).value_or(Json());
  EXPECT_EQ(report["systemWatts"], 12.48);
  EXPECT_EQ(report["processWatts"], 4.6);
  EXPECT_EQ(report["temperature"], 61.4);
  EXPECT_EQ(report["thermalState"], "nominal");
  EXPECT_EQ(report["fansRPM"], Json({1720, 2501}));
  EXPECT_EQ(report["apps"][0]["name"], "Xcode");
  EXPECT_EQ(report["apps"][0]["watts"], 4.6);
}

}  // namespace
}  // namespace embrix
