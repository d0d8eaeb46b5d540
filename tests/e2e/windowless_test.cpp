// The built program without a window: on this machine until it is told to end, and on a recording
// of a whole day.

#include <signal.h>

#include <cmath>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/json.h"
#include "fakes/scripted_host.h"
#include "hosts/replay/recording_host.h"
#include "hosts/replay/recording_writer.h"
#include "program.h"

namespace embrix {
namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::SizeIs;

Json parsed(const std::string& line) {
  return parseJson(line).value_or(Json());
}

class WindowlessTest : public ProgramTest {
 protected:
  // So that a test need not wait long for a line.
  void sampleEverySecond() const {
    std::filesystem::create_directories(configFolder_ / "embrix");
    configFolder_.write("embrix/settings.json", R"({"sampleInterval": 1})");
  }

  std::string records() const { return dataFolder_ / "Embrix"; }
};

TEST_F(WindowlessTest, EachSignalEndsItWithStatusZero) {
  sampleEverySecond();
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    RunningProgram program = running({"--watch"});
    const auto line = program.readLine();
    ASSERT_TRUE(line.has_value());
    EXPECT_TRUE(parsed(*line).is_object()) << *line;
    program.signal(signal);
    const Outcome outcome = program.end();
    EXPECT_EQ(outcome.exitStatus, 0) << signal;
    EXPECT_EQ(outcome.complaints, "");
  }
}

TEST_F(WindowlessTest, AReaderWhoGoesAwayEndsItWithStatusZero) {
  sampleEverySecond();
  RunningProgram program = running({"--watch"});
  ASSERT_TRUE(program.readLine().has_value());
  program.closeOutput();
  const Outcome outcome = program.end();
  EXPECT_EQ(outcome.exitStatus, 0);
  EXPECT_EQ(outcome.complaints, "");
}

TEST_F(WindowlessTest, TwoOnTheSameRecordsAreOneTooMany) {
  sampleEverySecond();
  RunningProgram first = running({"--watch"});
  ASSERT_TRUE(first.readLine().has_value());
  const Outcome second = outcomeOf({EMBRIX_PROGRAM, "--background"}, world());
  EXPECT_EQ(second.exitStatus, 2);
  EXPECT_EQ(second.output, "");
  EXPECT_EQ(second.complaints, "embrix: another Embrix keeps its records in " + records() + ".\n");

  RunningProgram other = running({"--watch", "--records", folder_ / "others"});
  EXPECT_TRUE(other.readLine().has_value());
  // However the first one ended, the folder is free.
  first.signal(SIGKILL);
  first.end();
  RunningProgram next = running({"--watch"});
  EXPECT_TRUE(next.readLine().has_value());
}

TEST_F(WindowlessTest, ARecordedRunTellsTheSameWhenItIsReplayed) {
  sampleEverySecond();
  RunningProgram program = running({"--watch", "--record", folder_ / "recording"});
  std::string live;
  for (int i = 0; i < 3; ++i) {
    const auto line = program.readLine();
    ASSERT_TRUE(line.has_value());
    live += *line + "\n";
  }
  program.signal(SIGTERM);
  live += program.end().output;
  const Outcome replayed =
      outcomeOf({EMBRIX_PROGRAM, "--watch", "--replay", folder_ / "recording"}, world());
  EXPECT_EQ(replayed.exitStatus, 0);
  // Learnt thresholds are the live run's own; the rest is the machine's.
  const auto withoutLevel = [](const std::string& text) {
    std::vector<Json> lines;
    std::size_t at = 0;
    while (at < text.size()) {
      const std::size_t end = text.find('\n', at);
      lines.push_back(parsed(text.substr(at, end - at)));
      lines.back().erase("loadLevel");
      at = end + 1;
    }
    return lines;
  };
  EXPECT_EQ(withoutLevel(replayed.output), withoutLevel(live));
}

// A day on a laptop, a tick every 20 seconds from midnight to midnight in Greenwich. A compiler
// draws 6 W from nine to half past nine; an editor draws 2 W all the time; the lid is closed from
// noon to one, and the machine is throttled from 15:00 to 15:10.
class MadeUpDay {
 public:
  static constexpr double kMidnight = 1'749'945'600;  // 2025-06-15
  static constexpr double kStep = 20;                 // seconds
  static constexpr double kHour = 3600;
  static constexpr double kDay = 24 * kHour;
  static constexpr std::int32_t kEditor = 100;
  static constexpr std::int32_t kCompiler = 200;

  // By the seconds since midnight.
  static bool compiles(double time) { return time > 9 * kHour && time <= 9.5 * kHour; }
  static bool isAsleep(double time) { return time > 12 * kHour && time < 13 * kHour; }
  static bool isThrottled(double time) { return time >= 15 * kHour && time < 15.0 * kHour + 600; }

  // Writes the recording of so many such days and tells how many ticks it has.
  static int record(const std::string& path, int days = 1) {
    ScriptedHost world;
    world.wallTime = kMidnight;
    draw(world.add(kEditor, "/usr/bin/editor"), 0);
    draw(world.add(kCompiler, "/usr/bin/compiler"), 0);
    auto opened = RecordingWriter::open(path);
    const auto writer = std::get<std::shared_ptr<RecordingWriter>>(std::move(opened));
    Host host = recordingHost(world.host(), writer);
    int ticks = 0;
    std::vector<RawProcess> table;
    for (double time = 0; time < days * kDay; time += kStep) {
      const double clock = std::fmod(time, kDay);
      if (isAsleep(clock)) continue;  // counters, and uptime on a Mac, stand still
      draw(*world.find(kEditor), time > 0 ? 2 * kStep : 0);
      draw(*world.find(kCompiler), compiles(clock) ? 6 * kStep : 0);
      world.wallTime = kMidnight + time;
      world.uptime += kStep;
      world.thermalState = isThrottled(clock) ? ThermalState::serious : ThermalState::nominal;
      sampleAsTheProgramDoes(host, table);
      ++ticks;
    }
    return ticks;
  }

 private:
  static void draw(ScriptedProcess& process, double joules) {
    if (!process.raw.usage) process.raw.usage = RawUsage{};
    RawUsage& usage = *process.raw.usage;
    usage.energyNJ = usage.energyNJ.value_or(0) + static_cast<std::uint64_t>(joules * 1e9);
  }

  static void sampleAsTheProgramDoes(Host& host, std::vector<RawProcess>& table) {
    host.clock->beginTick();
    host.clock->uptime();
    host.processes->read(table);
    for (const RawProcess& process : table) host.processes->executablePath(process.pid);
    host.clock->wallTime();
    host.thermalState->read();
  }
};

class MadeUpDayTest : public WindowlessTest {
 protected:
  // The lines of a replayed day.
  std::vector<Json> watch(const std::string& recording, std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.begin(), {EMBRIX_PROGRAM, "--watch", "--replay", recording});
    auto environment = world();
    environment.emplace_back("TZ=UTC");
    const Outcome outcome = outcomeOf(arguments, environment);
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.complaints, "");
    std::vector<Json> lines;
    std::size_t at = 0;
    while (at < outcome.output.size()) {
      const std::size_t end = outcome.output.find('\n', at);
      lines.push_back(parsed(outcome.output.substr(at, end - at)));
      at = end + 1;
    }
    return lines;
  }

  Json record(const std::string& name) const { return parsed(folder_.read("records/" + name)); }
};

TEST_F(MadeUpDayTest, IsWatchedFrameByFrameAndKeptAsItWas) {
  const std::string recording = folder_ / "day";
  const int ticks = MadeUpDay::record(recording);
  ASSERT_GT(ticks, 4000);
  const auto lines =
      watch(recording, {"--ui-testing", "--set", "runawayNotifications=1", "--set", "alertWatts=3",
                        "--set", "alertMinutes=5", "--records", folder_ / "records"});
  ASSERT_THAT(lines, SizeIs(static_cast<std::size_t>(ticks) - 1));

  // Of the compiler alone, once it has drawn over 3 W in four fifths of five minutes, until it has
  // not for more than one of them; one alert, and one of the throttling.
  std::map<std::string, std::vector<double>> alerts;
  std::set<std::string> runaways;
  double firstRunaway = 0;
  double lastRunaway = 0;
  double energy = 0;  // watt-hours
  double before = MadeUpDay::kMidnight;
  for (const Json& line : lines) {
    const double time = line["time"];
    for (const Json& alert : line["alerts"]) alerts[alert].push_back(time - MadeUpDay::kMidnight);
    for (const Json& key : line["runaways"]) runaways.insert(std::string(key));
    if (!line["runaways"].empty()) {
      if (firstRunaway == 0) firstRunaway = time - MadeUpDay::kMidnight;
      lastRunaway = time - MadeUpDay::kMidnight;
    }
    energy += double(line["totalWatts"]) * std::min(time - before, 30.0) / 3600;
    before = time;
  }
  ASSERT_THAT(runaways, SizeIs(1));
  const std::string compiler = *runaways.begin();
  EXPECT_THAT(compiler, testing::HasSubstr("compiler"));
  // The window holds the points of the last 300 seconds, both ends included: 16 of them, of which
  // 13 are four fifths. Smoothing passes 3 W in the first tick of work.
  EXPECT_EQ(firstRunaway, 9 * 3600 + 13 * 20);
  ASSERT_THAT(alerts, SizeIs(2));
  EXPECT_THAT(alerts["hot-" + compiler], testing::ElementsAre(firstRunaway));
  EXPECT_THAT(alerts["throttle"], testing::ElementsAre(15 * 3600.0));
  EXPECT_LT(lastRunaway, 9.5 * 3600 + 120);

  // What it drew: 2 W for 23 hours and 6 W for half an hour. Smoothing moves some of it to the next
  // tick and loses none.
  EXPECT_NEAR(energy, 2 * 23 + 6 * 0.5, 0.2);
  const Json ledger = record("today.json");
  EXPECT_EQ(ledger["day"], "2025-06-15");
  EXPECT_NEAR(double(ledger["totalWattHours"]), energy, 0.2);
  EXPECT_EQ(record("archive.json")["days"].size(), 1U);
  EXPECT_FALSE(record("history.json").empty());
  EXPECT_FALSE(record("baseline.json").empty());
}

TEST_F(MadeUpDayTest, SevenOfThemLeaveARecordOfEach) {
  const std::string recording = folder_ / "week";
  const int ticks = MadeUpDay::record(recording, 7);
  // A pause of a second: saved with every thirtieth frame, which is every ten minutes here.
  const auto lines = watch(recording, {"--ui-testing", "--set", "sampleInterval=1", "--set",
                                       "runawayNotifications=1", "--records", folder_ / "records"});
  ASSERT_THAT(lines, SizeIs(static_cast<std::size_t>(ticks) - 1));
  std::map<std::string, std::vector<int>> alerts;  // the days of each
  for (const Json& line : lines) {
    const double sinceStart = double(line["time"]) - MadeUpDay::kMidnight;
    const int day = static_cast<int>(sinceStart / MadeUpDay::kDay);
    for (const Json& alert : line["alerts"]) alerts[alert].push_back(day);
  }
  ASSERT_THAT(alerts, SizeIs(2));
  for (const auto& [name, days] : alerts) {
    EXPECT_THAT(days, testing::ElementsAre(0, 1, 2, 3, 4, 5, 6)) << name;
  }

  const Json days = record("archive.json")["days"];
  ASSERT_EQ(days.size(), 7U);
  for (std::size_t i = 0; i < days.size(); ++i) {
    EXPECT_EQ(days[i]["day"], fmt::format("2025-06-{}", 15 + i));
    // What a day drew, less at most the last ten minutes of it.
    EXPECT_NEAR(double(days[i]["wattHours"]), 2 * 23 + 6 * 0.5, 0.5) << i;
    EXPECT_EQ(days[i]["appWattHours"].size(), 2U);
  }
  EXPECT_EQ(record("today.json")["day"], "2025-06-21");
}

TEST_F(MadeUpDayTest, IsToldTheSameEachTime) {
  const std::string recording = folder_ / "day";
  MadeUpDay::record(recording);
  EXPECT_EQ(watch(recording), watch(recording));
}

TEST_F(MadeUpDayTest, TouchesNothingOfTheUsers) {
  const std::string recording = folder_ / "day";
  MadeUpDay::record(recording);
  watch(recording);
  EXPECT_THAT(dataFolder_.names(), IsEmpty());
  EXPECT_THAT(configFolder_.names(), IsEmpty());
  EXPECT_THAT(homeFolder_.names(), IsEmpty());
}

}  // namespace
}  // namespace embrix
