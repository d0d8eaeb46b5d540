#include "entry/report_text.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "report_frames.h"

namespace embrix {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string report(const Frame& frame) {
  return reportText(frame, {});
}

// The report of an otherwise empty frame behind its first line.
std::string behindHead(const Frame& frame, const ReportExtras& extras = {}) {
  const std::string text = reportText(frame, extras);
  return text.substr(text.find('\n') + 1);
}

TEST(ReportTextTest, AnEmptyFrameIsOneLine) {
  EXPECT_EQ(report(Frame{}), "system n/a  processes 0.0 W  temp –\n");
}

TEST(ReportTextTest, EveryBlockStandsInItsPlace) {
  Frame frame = wholeFrame();
  frame.groups[0].processes[0].gpuWatts = 1.5;
  frame.breakdown = PowerBreakdown{.cpu = 3.456,
                                   .gpu = 0.5,
                                   .neuralEngine = 0,
                                   .memory = 0.25,
                                   .display = 1,
                                   .cores = {{"P0", true, 1}, {"E0", false, 0.5}}};
  frame.gpuUtilization = 0.425;
  frame.memory =
      MemoryReading{.usedBytes = 9ULL << 30, .totalBytes = 16ULL << 30, .pressure = 0.333};
  frame.servers = {LocalServer{.title = "vite",
                               .project = "shop",
                               .ports = {3000, 3001},
                               .process = {.pid = 77, .exposedPorts = {3001}}}};
  frame.sleepBlockers = {SleepBlocker{.pid = 88,
                                      .processName = "caffeinate",
                                      .preventsSystemSleep = true,
                                      .reasons = {"asked to", "busy"}}};
  frame.forgotten = {ForgottenItem{.title = "npm run dev",
                                   .ports = {5173},
                                   .uptime = 7259,
                                   .members = std::vector<ProcessFacts>(3)}};
  const ReportExtras extras{
      .controlTitle = "12 W · Cool",
      .overnight = Overnight{.sleptAt = 1000,
                             .wokeAt = 1000 + 8 * 3600,
                             .darkWakes = 4,
                             .awakeSeconds = 63.9,
                             .chargeAtSleep = 84,
                             .chargeAtWake = 79,
                             .causes = {{"Scheduled maintenance", 3}, {"Network", 1}},
                             .requesters = {{"mDNSResponder", 2}}}};
  EXPECT_EQ(reportText(frame, extras),
            "system 12.5 W  processes 9.1 W  temp 61°C\n"
            "soc: cpu 3.46 W  gpu 0.50 W  ane 0.00 W  memory 0.25 W  display 1.00 W  cores 2\n"
            "gpu 42%  memory 9.0 / 16 GB  pressure 33%\n"
            "control center: 12 W · Cool\n"
            "fans 1201/6000 rpm  1350/6500 rpm\n"
            "server: vite · shop · ports [3000, 3001] · on network [3001] · pid 77\n"
            "awake: caffeinate (88) · Keeps your Mac awake · asked to, busy\n"
            "last sleep: 8h 0m · 4 dark wakes · 63s awake · charge 84→79% · "
            "causes Scheduled maintenance ×3, Network ×1 · asked by mDNSResponder ×2\n"
            "forgotten: npm run dev · - · ports [5173] · up 120m · 3 proc\n"
            "   9.07 W  182.1%  Xcode  (GPU 1.50 W)\n"
            "       5.00 W   98.5%  swift/frontend (501)\n"
            "   0.00 W    0.0%  Idle\n");
}

TEST(ReportTextTest, WithoutABatteryOrItsFigureTheSystemIsNotAvailable) {
  Frame frame;
  EXPECT_THAT(report(frame), StartsWith("system n/a  "));
  frame.battery = BatteryReading{.percent = 80};
  EXPECT_THAT(report(frame), StartsWith("system n/a  "));
  frame.battery->systemWatts = 7.25;
  EXPECT_THAT(report(frame), StartsWith("system 7.2 W  "));
}

TEST(ReportTextTest, MemoryNeedsTheGPUAndTheGPUNeedsMemory) {
  Frame frame;
  frame.gpuUtilization = 0.5;
  EXPECT_EQ(behindHead(frame), "");
  frame.memory = MemoryReading{};
  EXPECT_EQ(behindHead(frame), "gpu 50%  memory 0.0 / 0 GB  pressure 0%\n");
  frame.gpuUtilization.reset();
  EXPECT_EQ(behindHead(frame), "");
}

TEST(ReportTextTest, WithoutFansThereIsNoFanLine) {
  Frame frame;
  EXPECT_THAT(report(frame), Not(HasSubstr("fans")));
  frame.fans = {{0, 0}};
  EXPECT_EQ(behindHead(frame), "fans 0/0 rpm\n");
}

TEST(ReportTextTest, AServerWithoutProjectPortsOrExposureSaysSo) {
  Frame frame;
  frame.servers = {LocalServer{.title = "python", .process = {.pid = 9}}};
  EXPECT_EQ(behindHead(frame), "server: python · - · ports [] · pid 9\n");
}

TEST(ReportTextTest, ABlockerOfTheDisplayIsToldAsSuchEvenIfItBlocksBoth) {
  Frame frame;
  frame.sleepBlockers = {SleepBlocker{.pid = 1, .processName = "a", .preventsDisplaySleep = true},
                         SleepBlocker{.pid = 2,
                                      .processName = "b",
                                      .preventsSystemSleep = true,
                                      .preventsDisplaySleep = true,
                                      .reasons = {"film"}}};
  EXPECT_EQ(behindHead(frame),
            "awake: a (1) · Keeps the display on · \n"
            "awake: b (2) · Keeps the display on · film\n");
}

TEST(ReportTextTest, ASleepWithoutChargeCausesOrRequestsKeepsItsHeadings) {
  const ReportExtras extras{.overnight = Overnight{.sleptAt = 0, .wokeAt = 1859.5}};
  EXPECT_EQ(behindHead(Frame{}, extras),
            "last sleep: 30m · 0 dark wakes · 0s awake · charge ?→?% · causes  · asked by \n");
}

TEST(ReportTextTest, AllCausesAndTheFirstFiveRequestersAreTold) {
  Overnight night{.sleptAt = 0, .wokeAt = 3600};
  for (const char* name : {"a", "b", "c", "d", "e", "f"}) {
    night.causes.push_back({name, 2});
    night.requesters.push_back({name, 1});
  }
  EXPECT_THAT(behindHead(Frame{}, {.overnight = night}),
              HasSubstr("causes a ×2, b ×2, c ×2, d ×2, e ×2, f ×2 · "
                        "asked by a ×1, b ×1, c ×1, d ×1, e ×1\n"));
}

TEST(ReportTextTest, UptimeIsCutToWholeMinutes) {
  const std::pair<double, const char*> rows[] = {
      {0, "up 0m"}, {59.9, "up 0m"}, {60, "up 1m"}, {3599, "up 59m"}, {-59, "up 0m"},
  };
  for (const auto& [uptime, expected] : rows) {
    Frame frame;
    frame.forgotten = {ForgottenItem{.title = "x", .uptime = uptime}};
    EXPECT_THAT(behindHead(frame), HasSubstr(expected)) << uptime;
  }
}

TEST(ReportTextTest, OnlyTheFirstThreeRowsOfAGroupAreConsidered) {
  Frame frame;
  frame.groups = {group("App", {row(1, "a", 5), row(2, "b", 0), row(3, "c", 0), row(4, "d", 4)})};
  EXPECT_EQ(behindHead(frame),
            "   9.00 W    0.0%  App\n"
            "       5.00 W    0.0%  a (1)\n");
}

TEST(ReportTextTest, AGroupWithoutAProcessWorthALinePrintsItsOwnLineAlone) {
  Frame frame;
  frame.groups = {group("Idle", {row(1, "a", 0.0099), row(2, "b", 0)})};
  EXPECT_EQ(behindHead(frame), "   0.01 W    0.0%  Idle\n");
}

TEST(ReportTextTest, AHundredthOfAWattIsWorthALine) {
  Frame frame;
  frame.groups = {group("App", {row(1, "a", 0.01)})};
  EXPECT_THAT(behindHead(frame), HasSubstr("       0.01 W    0.0%  a (1)\n"));
}

TEST(ReportTextTest, GPUWattsAreToldFromAHundredthOfAllRowsTogether) {
  Frame frame;
  frame.groups = {group("App", {row(1, "a", 0), row(2, "b", 0), row(3, "c", 0), row(4, "d", 0)})};
  auto& rows = frame.groups[0].processes;
  rows[0].gpuWatts = 0.009;
  EXPECT_THAT(behindHead(frame), Not(HasSubstr("GPU")));
  // The rows that print no line of their own count as well.
  rows[3].gpuWatts = 0.0015;
  EXPECT_EQ(behindHead(frame), "   0.00 W    0.0%  App  (GPU 0.01 W)\n");
}

TEST(ReportTextTest, TenGroupsAreShownAndAllAreSummed) {
  Frame frame;
  for (int i = 0; i < 14; ++i) frame.groups.push_back(group("App", {row(i, "a", 1)}));
  const std::string text = report(frame);
  EXPECT_THAT(text, StartsWith("system n/a  processes 14.0 W  "));
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1 + 2 * 10);
}

TEST(ReportTextTest, NothingForeignActsOnTheTerminal) {
  const std::string hostile =
      "a\x1b[2J\r\n\x7f\xc2\x9b\xff"
      "b";
  const std::string shown =
      "a\\x1b[2J\\x0d\\x0a\\x7f\\u009b\\xff"
      "b";
  Frame frame;
  frame.groups = {group(hostile, {row(1, hostile, 1)})};
  frame.servers = {LocalServer{.title = hostile, .project = hostile, .process = {.pid = 2}}};
  frame.sleepBlockers = {SleepBlocker{.pid = 3, .processName = hostile, .reasons = {hostile}}};
  frame.forgotten = {ForgottenItem{.title = hostile, .project = hostile}};
  const ReportExtras extras{
      .controlTitle = hostile,
      .overnight =
          Overnight{.wokeAt = 3600, .causes = {{hostile, 1}}, .requesters = {{hostile, 1}}}};
  EXPECT_EQ(behindHead(frame, extras),
            fmt::format("control center: {0}\n"
                        "server: {0} · {0} · ports [] · pid 2\n"
                        "awake: {0} (3) · Keeps your Mac awake · {0}\n"
                        "last sleep: 1h 0m · 0 dark wakes · 0s awake · charge ?→?% · "
                        "causes {0} ×1 · asked by {0} ×1\n"
                        "forgotten: {0} · {0} · ports [] · up 0m · 0 proc\n"
                        "   1.00 W    0.0%  {0}\n"
                        "       1.00 W    0.0%  {0} (1)\n",
                        shown));
}

TEST(ReportTextTest, NumbersReadAsThePlatformWritesThem) {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> exponents(-4, 7);
  for (int i = 0; i < 2000; ++i) {
    // Halves of the last digit shown are where two ways to round would differ.
    const double exact = std::pow(10, exponents(random));
    const double watts = i % 2 == 0 ? exact : std::round(exact * 8) / 8;
    Frame frame;
    frame.temperature = watts;
    frame.groups = {group("App", {row(1, "a", watts, watts)})};
    char expected[400];
    std::snprintf(expected, sizeof expected,
                  "system n/a  processes %.1f W  temp %.0f°C\n%7.2f W %6.1f%%  App\n", watts, watts,
                  watts, watts);
    EXPECT_THAT(report(frame), StartsWith(expected));
  }
}

TEST(ReportTextTest, NoNumberIsACrash) {
  const double numbers[] = {std::nan(""), INFINITY, -INFINITY, 1e308, -1e308};
  for (const double number : numbers) {
    Frame frame;
    frame.temperature = number;
    frame.fans = {{number, number}};
    frame.gpuUtilization = number;
    frame.memory = MemoryReading{.usedBytes = ~0ULL, .totalBytes = ~0ULL, .pressure = number};
    frame.forgotten = {ForgottenItem{.title = "x", .uptime = number}};
    frame.groups = {group("App", {row(1, "a", number, number)})};
    const ReportExtras extras{
        .overnight = Overnight{.sleptAt = -number, .wokeAt = number, .awakeSeconds = number}};
    EXPECT_THAT(reportText(frame, extras), HasSubstr("forgotten: x"));
  }
}

}  // namespace
}  // namespace embrix
