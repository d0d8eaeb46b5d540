#include "hosts/replay/replay_host.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <variant>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "hosts/replay/recording_format.h"
#include "recorded_worlds.h"

namespace embrix {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

const std::string kHeader = encodeHeader({.hostName = "macos", .uptime = 9, .wallTime = 90}) + "\n";

std::string problemOfPath(const std::string& path) {
  const auto result = openReplay(path);
  const auto* problem = std::get_if<RecordingProblem>(&result);
  return problem == nullptr ? "" : problem->text;
}

TEST(ReplayHostTest, EveryAnswerComesBack) {
  ScriptedHost world;
  fillLaptop(world);
  std::vector<TickAnswers> given;
  Replay replay = replayOf(recordedInterviews(world, laptopQuestions(), 5, &given));
  Host& host = replay.host;
  EXPECT_EQ(replay.ticks, 5U);
  EXPECT_FALSE(replay.tornLastLine);
  EXPECT_EQ(host.name, world.name);
  EXPECT_EQ(host.machine, world.machine);
  EXPECT_EQ(host.user, world.user);
  EXPECT_EQ(host.processes->ticksToNS(), world.ticksToNS);
  EXPECT_EQ(host.memory->pageSize(), world.pageSize);
  EXPECT_EQ(host.memory->physicalBytes(), world.physicalBytes);
  EXPECT_TRUE(host.battery->hasService());
  EXPECT_TRUE(host.smc->isOpen());
  EXPECT_EQ(host.temperatures->sensors(), (std::vector<std::string>{"PMU tdie1", "", "PMU tdie1"}));
  for (const TickAnswers& answers : given) EXPECT_EQ(interview(host, laptopQuestions()), answers);
}

TEST(ReplayHostTest, EveryAbsenceComesBack) {
  ScriptedHost world;
  fillLaptop(world);
  for (const char* source :
       {"processes", "processDetails", "responsibility", "applications", "energy", "battery",
        "temperatures", "smc", "gpu", "memory", "assertions", "powerLog", "commands", "files"}) {
    world.failing.insert(source);
  }
  std::vector<TickAnswers> given;
  Replay replay = replayOf(recordedInterviews(world, laptopQuestions(), 2, &given));
  ASSERT_TRUE(given[1].table.empty());
  for (const TickAnswers& answers : given) {
    EXPECT_EQ(interview(replay.host, laptopQuestions()), answers);
  }
}

TEST(ReplayHostTest, ASourceThatFailsForOneTickFailsForThatTick) {
  for (const char* source :
       {"processes", "processDetails", "responsibility", "applications", "energy", "battery",
        "temperatures", "smc", "gpu", "memory", "assertions", "powerLog", "commands", "files"}) {
    ScriptedHost world;
    fillLaptop(world);
    int tick = 0;
    world.onTick = [&] {
      world.failing.clear();
      if (++tick == 2) world.failing.insert(source);
    };
    std::vector<TickAnswers> given;
    Replay replay = replayOf(recordedInterviews(world, laptopQuestions(), 4, &given));
    ASSERT_NE(given[1], given[2]) << source;
    for (const TickAnswers& answers : given) {
      EXPECT_EQ(interview(replay.host, laptopQuestions()), answers) << source;
    }
  }
}

TEST(ReplayHostTest, TheSameQuestionTwiceInATickIsAnsweredInOrder) {
  ScriptedHost world;
  world.add(1, "/a");
  world.sensors = {{"a", 1}};
  const std::string recording = recordingOf(world, [&](Host& host) {
    std::vector<RawProcess> table;
    host.clock->beginTick();
    host.processes->read(table);
    host.clock->uptime();
    host.temperatures->read(0);
    world.add(2, "/b");
    world.uptime += 1;
    world.sensors[0].celsius = 2;
    host.processes->read(table);
    host.clock->uptime();
    host.temperatures->read(0);
  });
  Replay replay = replayOf(recording);
  replay.host.clock->beginTick();
  std::vector<RawProcess> table;
  for (const std::size_t size : {1U, 2U, 2U}) {
    replay.host.processes->read(table);
    EXPECT_EQ(table.size(), size);
  }
  for (const double uptime : {1000.0, 1001.0, 1001.0}) {
    EXPECT_EQ(replay.host.clock->uptime(), uptime);
  }
  for (const double celsius : {1.0, 2.0, 2.0}) {
    EXPECT_EQ(replay.host.temperatures->read(0), celsius);
  }
}

TEST(ReplayHostTest, BeforeTheFirstTickTheClocksShowTheBeginning) {
  Replay replay = replayOf(kHeader + "{\"tick\":1,\"uptime\":[10]}\n");
  EXPECT_EQ(replay.host.clock->uptime(), 9);
  EXPECT_EQ(replay.host.clock->wallTime(), 90);
  replay.host.clock->beginTick();
  EXPECT_EQ(replay.host.clock->uptime(), 10);
  EXPECT_EQ(replay.host.clock->wallTime(), 90);
}

TEST(ReplayHostTest, WhatWasAskedBeforeTheFirstTickIsAnsweredThere) {
  ScriptedHost world;
  world.files["/a"] = "one";
  world.memoryFreeLevel = 7;
  const std::string recording = recordingOf(world, [&](Host& host) {
    host.files->read("/a");
    host.memory->freeLevel();
    host.clock->beginTick();
  });
  Replay replay = replayOf(recording);
  EXPECT_EQ(replay.ticks, 1U);
  EXPECT_FALSE(replay.finished());
  EXPECT_EQ(replay.host.files->read("/a"), "one");
  EXPECT_EQ(replay.host.memory->freeLevel(), 7);
  replay.host.clock->beginTick();
  EXPECT_TRUE(replay.finished());
  EXPECT_EQ(replay.host.files->read("/a"), "one");
  EXPECT_EQ(replay.host.memory->freeLevel(), std::nullopt);
}

TEST(ReplayHostTest, SleepReturnsAtOnceAndMovesNoClock) {
  Replay replay = replayOf(kHeader + "{\"tick\":1,\"uptime\":[10]}\n");
  replay.host.clock->sleep(std::numeric_limits<double>::infinity());
  EXPECT_EQ(replay.host.clock->uptime(), 9);
}

TEST(ReplayHostTest, AQuestionThatWasNotAskedInTheTickIsAbsent) {
  ScriptedHost world;
  fillLaptop(world);
  const std::string recording = recordingOf(world, [&](Host& host) {
    interview(host, laptopQuestions());
    host.clock->beginTick();
  });
  Replay replay = replayOf(recording);
  interview(replay.host, laptopQuestions());
  const TickAnswers last = interview(replay.host, laptopQuestions());
  EXPECT_FALSE(last.energySample);
  EXPECT_EQ(last.energyInterval, std::nullopt);
  EXPECT_EQ(last.batteryRegistry, std::nullopt);
  EXPECT_TRUE(last.powerSources.empty());
  EXPECT_EQ(last.temperatures, std::vector<std::optional<double>>(3));
  EXPECT_EQ(last.thermalState, ThermalState::nominal);
  EXPECT_EQ(last.gpuStatistics, std::nullopt);
  EXPECT_TRUE(last.gpuClients.empty());
  EXPECT_EQ(last.memoryCounters, std::nullopt);
  EXPECT_EQ(last.memoryFreeLevel, std::nullopt);
  EXPECT_TRUE(last.assertions.empty());
}

TEST(ReplayHostTest, WhatIsKnownStandsInTicksThatDidNotAsk) {
  ScriptedHost world;
  fillLaptop(world);
  TickAnswers first;
  const std::string recording = recordingOf(world, [&](Host& host) {
    first = interview(host, laptopQuestions());
    host.clock->beginTick();
  });
  Replay replay = replayOf(recording);
  replay.host.clock->beginTick();
  replay.host.clock->beginTick();
  replay.host.clock->beginTick();
  const TickAnswers later = interview(replay.host, laptopQuestions());
  EXPECT_EQ(later.table, first.table);
  EXPECT_EQ(later.paths, first.paths);
  EXPECT_EQ(later.arguments, first.arguments);
  EXPECT_EQ(later.directories, first.directories);
  EXPECT_EQ(later.listening, first.listening);
  EXPECT_EQ(later.responsible, first.responsible);
  EXPECT_EQ(later.bundles, first.bundles);
  EXPECT_EQ(later.applications, first.applications);
  EXPECT_EQ(later.applicationPaths, first.applicationPaths);
  EXPECT_EQ(later.smc, first.smc);
  EXPECT_EQ(later.powerLog, first.powerLog);
  EXPECT_EQ(later.commandOutputs, first.commandOutputs);
  EXPECT_EQ(later.commandStarts, first.commandStarts);
  EXPECT_EQ(later.files, first.files);
}

// A machine whose process 5 is asked about in the first tick, and changed before the second, in
// which the table is read alone.
std::optional<std::string> pathInSecondTick(const std::function<void(ScriptedHost&)>& change) {
  ScriptedHost world;
  world.add(5, "/first");
  const std::string recording = recordingOf(world, [&](Host& host) {
    std::vector<RawProcess> table;
    host.clock->beginTick();
    host.processes->read(table);
    host.processes->executablePath(5);
    change(world);
    host.clock->beginTick();
    host.processes->read(table);
  });
  Replay replay = replayOf(recording);
  replay.host.clock->beginTick();
  EXPECT_EQ(replay.host.processes->executablePath(5), "/first");
  replay.host.clock->beginTick();
  return replay.host.processes->executablePath(5);
}

TEST(ReplayHostTest, WhatIsKnownOfAProcessGoesWithIt) {
  EXPECT_EQ(pathInSecondTick([](ScriptedHost&) {}), "/first");
  EXPECT_EQ(pathInSecondTick([](ScriptedHost& world) { world.remove(5); }), std::nullopt);
  EXPECT_EQ(pathInSecondTick([](ScriptedHost& world) { world.find(5)->raw.startTime += 1; }),
            std::nullopt);
  EXPECT_EQ(pathInSecondTick([](ScriptedHost& world) { world.find(5)->raw.ppid = 77; }), "/first");
}

TEST(ReplayHostTest, ATickPastTheEndStandsStill) {
  ScriptedHost world;
  fillLaptop(world);
  std::vector<TickAnswers> given;
  Replay replay = replayOf(recordedInterviews(world, laptopQuestions(), 2, &given));
  EXPECT_FALSE(replay.finished());
  interview(replay.host, laptopQuestions());
  EXPECT_FALSE(replay.finished());
  EXPECT_EQ(interview(replay.host, laptopQuestions()), given[1]);
  EXPECT_TRUE(replay.finished());
  for (int i = 0; i < 3; ++i) {
    const TickAnswers past = interview(replay.host, laptopQuestions());
    EXPECT_EQ(past, given[1]);
    EXPECT_TRUE(replay.finished());
  }
}

TEST(ReplayHostTest, WhetherItIsFinishedCanBeAskedAfterTheHostIsGone) {
  std::function<bool()> finished;
  {
    Replay replay = replayOf(kHeader + "{\"tick\":1}\n");
    replay.host.clock->beginTick();
    finished = replay.finished;
  }
  EXPECT_TRUE(finished());
}

TEST(ReplayHostTest, NothingIsStartedOrReadOnThisMachine) {
  Replay replay = replayOf(kHeader + "{\"tick\":1}\n");
  replay.host.clock->beginTick();
  EXPECT_FALSE(replay.host.commands->start("/bin/true", {}));
  EXPECT_EQ(replay.host.commands->output("/bin/echo", {"a"}), std::nullopt);
  EXPECT_EQ(replay.host.files->read("/etc/hostname"), std::nullopt);
}

TEST(ReplayHostTest, EveryCutOfARecordingIsReadToTheCutOrRefused) {
  ScriptedHost world;
  world.sensors = {{"tdie", 41.5}};
  auto& process = world.add(412, "/bin/caf\xe9");
  world.onTick = [&] { process.raw.usage->userTime += 1; };
  std::vector<TickAnswers> given;
  const std::string whole = recordedInterviews(world, {}, 2, &given);
  const std::size_t headerEnd = whole.find('\n');
  const std::size_t firstEnd = whole.find('\n', headerEnd + 1);
  const std::string noTick = "cannot replay recording.jsonl: it holds no whole tick";
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    const std::string cut = whole.substr(0, length);
    if (length == 0) {
      EXPECT_EQ(problemWith(cut), "cannot replay recording.jsonl: it is empty");
    } else if (length < headerEnd) {
      EXPECT_EQ(problemWith(cut), "recording.jsonl, line 1: is no JSON") << length;
    } else if (length < firstEnd) {
      EXPECT_EQ(problemWith(cut), noTick) << length;
    } else {
      Replay replay = replayOf(cut);
      const auto ends = static_cast<std::uint64_t>(std::count(cut.begin(), cut.end(), '\n'));
      const bool isWhole = cut.back() == '\n' || whole[length] == '\n';
      ASSERT_EQ(replay.ticks, ends - 1 + (cut.back() != '\n' && isWhole ? 1 : 0)) << length;
      ASSERT_EQ(replay.tornLastLine, !isWhole) << length;
      for (std::uint64_t tick = 0; tick < replay.ticks; ++tick) {
        ASSERT_EQ(interview(replay.host, {}), given[tick]) << length;
      }
      EXPECT_TRUE(replay.finished());
    }
  }
}

TEST(ReplayHostTest, AnyChangedByteIsRefusedOrReplayed) {
  ScriptedHost world;
  fillLaptop(world);
  const std::string whole = recordedInterviews(world, laptopQuestions(), 2);
  std::size_t refused = 0;
  std::size_t replayed = 0;
  constexpr std::string_view kOthers("\0\n9-\"]\xff", 7);
  for (std::size_t at = 0; at < whole.size(); at += 3) {
    std::string changed = whole;
    changed[at] = kOthers[at % kOthers.size()];
    auto result = openReplayOfBytes(changed, "recording.jsonl");
    if (const auto* problem = std::get_if<RecordingProblem>(&result)) {
      ++refused;
      EXPECT_THAT(problem->text, StartsWith("recording.jsonl, line "));
      EXPECT_EQ(problem->text.find('\n'), std::string::npos);
      continue;
    }
    ++replayed;
    Host& host = std::get<Replay>(result).host;
    for (int tick = 0; tick < 3; ++tick) interview(host, laptopQuestions());
  }
  EXPECT_GT(refused, replayed);
  EXPECT_GT(replayed, 0U);
}

TEST(ReplayHostTest, DamageAnywhereIsToldBeforeAnythingIsAnswered) {
  const std::string ticks = "{\"tick\":1}\n{\"tick\":2}\n{\"tick\":3}\n";
  EXPECT_EQ(problemWith(kHeader + ticks), "");
  EXPECT_EQ(problemWith(kHeader + ticks + "{\"tick\":4,\"uptime\":[{}]}\n"),
            "recording.jsonl, line 5: uptime[0] is no number");
  EXPECT_EQ(problemWith(kHeader + ticks + "{\"tick\":4,\"processes\":[{\"gone\":[7]}]}\n"),
            "recording.jsonl, line 5: processes: gone names pid 7, which is not in the table");
}

TEST(ReplayHostTest, WhatIsNoFileCannotBeReplayed) {
  const ScratchFolder folder;
  folder.write("empty", "");
  folder.write("text", "hello\n");
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  struct Case {
    std::string path;
    std::string problem;
  };
  const Case cases[] = {
      {folder / "none", "cannot replay " + (folder / "none") + ": No such file or directory"},
      {folder.path(), "cannot replay " + folder.path() + ": it is a folder"},
      {folder / "pipe", "cannot replay " + (folder / "pipe") + ": it is no regular file"},
      {"/dev/zero", "cannot replay /dev/zero: it is no regular file"},
      {"", "cannot replay : No such file or directory"},
      {folder / "empty", "cannot replay " + (folder / "empty") + ": it is empty"},
      {folder / "text", (folder / "text") + ", line 1: is no JSON"},
      {folder / "text/more", "cannot replay " + (folder / "text/more") + ": Not a directory"},
  };
  for (const Case& test : cases) EXPECT_EQ(problemOfPath(test.path), test.problem);
}

TEST(ReplayHostTest, ANameCannotActOnTheTerminal) {
  EXPECT_THAT(problemOfPath("/no/\x1b[2J"), HasSubstr("/no/\\x1b[2J: "));
}

TEST(ReplayHostTest, AFileThatIsEmptiedWhileItIsReplayedEndsThere) {
  const ScratchFolder folder;
  std::string recording = kHeader;
  for (int tick = 1; tick <= 4000; ++tick) {
    recording += "{\"tick\":" + std::to_string(tick) + ",\"uptime\":[" + std::to_string(tick) +
                 "],\"x\":\"" + std::string(100, 'x') + "\"}\n";
  }
  folder.write("r.jsonl", recording);
  auto result = openReplay(folder / "r.jsonl");
  auto& replay = std::get<Replay>(result);
  ASSERT_EQ(replay.ticks, 4000U);
  replay.host.clock->beginTick();
  folder.write("r.jsonl", "");
  int begun = 1;
  while (!replay.finished()) {
    replay.host.clock->beginTick();
    ++begun;
  }
  EXPECT_LT(begun, 4000);
  EXPECT_GT(replay.host.clock->uptime(), 0);
}

}  // namespace
}  // namespace embrix
