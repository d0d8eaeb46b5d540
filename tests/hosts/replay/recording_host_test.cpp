#include "hosts/replay/recording_host.h"

#include <algorithm>
#include <memory>
#include <random>
#include <thread>
#include <variant>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/text.h"
#include "fakes/full_disk.h"
#include "recorded_worlds.h"
#include "sampling/sampler.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

std::vector<std::string> linesOf(const std::string& recording) {
  const auto pieces = Text::split(recording, '\n');
  return {pieces.begin(), pieces.end()};
}

std::shared_ptr<RecordingWriter> writerIn(const ScratchFolder& folder) {
  return std::get<std::shared_ptr<RecordingWriter>>(RecordingWriter::open(folder / "r.jsonl"));
}

// Lets processes come, go, restart under their pids and use time, and everything else move.
class Churn {
 public:
  Churn(ScriptedHost& world, unsigned seed) : world_(world), random_(seed) {}

  void step() {
    for (int i = upTo(5); i > 0; --i) startOne();
    for (int i = upTo(3); i > 0; --i) stopOne();
    for (ScriptedProcess& process : world_.processes) work(process);
    if (upTo(9) == 0) std::shuffle(world_.processes.begin(), world_.processes.end(), random_);
    world_.energyIntervals.push_back(
        {.channels = {{"CPU Energy", "mJ", upTo(100'000)}, {"GPU Energy", "mJ", upTo(50'000)}},
         .seconds = std::vector<double>{2.0, 0.1}});
    for (ScriptedSensor& sensor : world_.sensors) sensor.celsius = 30 + upTo(9000) / 100.0;
    world_.memoryCounters = MemoryCounters{random_(), random_(), random_(), random_()};
    world_.batteryRegistry = PropertyMap{{"Voltage", upTo(13'000)}, {"Amperage", -upTo(4000)}};
    world_.smcKeys["F0Ac"].bytes[3] = static_cast<std::uint8_t>(upTo(255));
    world_.files["/Users/ada/project/package.json"] = std::to_string(upTo(3));
    world_.uptime += upTo(100) / 1000.0;
  }

 private:
  int upTo(int most) { return std::uniform_int_distribution<>(0, most)(random_); }

  void startOne() {
    const std::int32_t pid = 2 + upTo(60);
    if (world_.find(pid) != nullptr) {
      world_.find(pid)->raw.startTime += 1;
      world_.find(pid)->path = "/opt/homebrew/bin/again" + std::to_string(upTo(2));
      return;
    }
    ScriptedProcess& process = world_.add(pid, "/opt/homebrew/bin/tool" + std::to_string(upTo(9)));
    process.arguments = {"tool", std::string(1, static_cast<char>(upTo(255)))};
    process.directory = "/Users/ada/project";
    if (upTo(2) == 0) process.listening = {{3000 + upTo(9), upTo(1) == 0}};
    if (upTo(2) == 0) process.responsiblePID = upTo(60);
  }
  void stopOne() {
    if (world_.processes.empty()) return;
    const auto place = upTo(static_cast<int>(world_.processes.size()) - 1);
    world_.processes.erase(world_.processes.begin() + place);
  }
  void work(ScriptedProcess& process) {
    if (upTo(2) != 0 || !process.raw.usage) return;
    process.raw.usage->userTime += static_cast<std::uint64_t>(upTo(1'000'000'000));
    process.raw.usage->energyNJ =
        process.raw.usage->energyNJ.value_or(0) + random_() % 9'000'000'000;
    if (upTo(5) == 0) process.listening.clear();
    if (upTo(20) == 0) process.raw.usage = std::nullopt;
  }

  ScriptedHost& world_;
  std::mt19937_64 random_;
};

TEST(RecordingHostTest, TheProgramSeesTheLiveMachine) {
  ScriptedHost one;
  ScriptedHost other;
  fillLaptop(one);
  fillLaptop(other);
  Host live = one.host();
  recordingOf(other, [&](Host& recorded) {
    EXPECT_EQ(recorded.name, live.name);
    EXPECT_EQ(recorded.machine, live.machine);
    EXPECT_EQ(recorded.user, live.user);
    for (int tick = 0; tick < 3; ++tick) {
      EXPECT_EQ(interview(recorded, laptopQuestions()), interview(live, laptopQuestions()));
      recorded.clock->sleep(2);
      live.clock->sleep(2);
    }
  });
  EXPECT_EQ(other.uptime, 1006);
}

TEST(RecordingHostTest, ARandomDayIsReplayedAnswerForAnswer) {
  for (unsigned seed = 1; seed <= 6; ++seed) {
    ScriptedHost world;
    fillLaptop(world);
    Churn churn(world, seed);
    world.onTick = [&] { churn.step(); };
    std::vector<TickAnswers> given;
    Replay replay = replayOf(recordedInterviews(world, laptopQuestions(), 30, &given));
    ASSERT_EQ(replay.ticks, 30U);
    for (std::size_t tick = 0; tick < given.size(); ++tick) {
      ASSERT_EQ(interview(replay.host, laptopQuestions()), given[tick])
          << "seed " << seed << ", tick " << tick + 1;
    }
  }
}

TEST(RecordingHostTest, ASamplerMakesTheSameFramesOfTheReplay) {
  ScriptedHost world;
  fillLaptop(world);
  Churn churn(world, 3);
  world.onTick = [&] { churn.step(); };
  std::vector<std::optional<Frame>> frames;
  const std::string recording = recordingOf(world, [&](Host& host) {
    Sampler sampler(host);
    for (int tick = 0; tick < 30; ++tick) {
      frames.push_back(sampler.next());
      host.clock->sleep(2);
    }
  });
  Replay replay = replayOf(recording);
  Sampler sampler(replay.host);
  for (const auto& frame : frames) EXPECT_EQ(sampler.next(), frame);
  EXPECT_FALSE(frames.back()->groups.empty());
  EXPECT_TRUE(std::any_of(frames.begin(), frames.end(),
                          [](const auto& frame) { return frame && !frame->servers.empty(); }));
  EXPECT_TRUE(replay.finished());
}

TEST(RecordingHostTest, ARecordedReplayIsTheSameRecording) {
  ScriptedHost world;
  fillLaptop(world);
  const std::string recording = recordedInterviews(world, laptopQuestions(), 3);
  Replay replay = replayOf(recording);
  const ScratchFolder folder;
  {
    Host again = recordingHost(std::move(replay.host), writerIn(folder));
    for (int tick = 0; tick < 3; ++tick) interview(again, laptopQuestions());
  }
  EXPECT_EQ(folder.read("r.jsonl"), recording);
}

TEST(RecordingHostTest, ALineIsWrittenWhenTheNextTickBegins) {
  ScriptedHost world;
  const ScratchFolder folder;
  {
    Host host = recordingHost(world.host(), writerIn(folder));
    EXPECT_EQ(linesOf(folder.read("r.jsonl")).size(), 1U);
    host.clock->beginTick();
    host.clock->uptime();
    EXPECT_EQ(linesOf(folder.read("r.jsonl")).size(), 1U);
    host.clock->beginTick();
    EXPECT_THAT(linesOf(folder.read("r.jsonl")),
                ElementsAre(testing::_, R"({"tick":1,"uptime":[1000.0]})"));
  }
  EXPECT_THAT(linesOf(folder.read("r.jsonl")),
              ElementsAre(testing::_, R"({"tick":1,"uptime":[1000.0]})", R"({"tick":2})"));
}

TEST(RecordingHostTest, TheLastLineIsWrittenWhenEverySourceIsGone) {
  ScriptedHost world;
  const ScratchFolder folder;
  std::unique_ptr<Clock> clock;
  {
    Host host = recordingHost(world.host(), writerIn(folder));
    host.clock->beginTick();
    clock = std::move(host.clock);
  }
  EXPECT_EQ(linesOf(folder.read("r.jsonl")).size(), 1U);
  clock.reset();
  EXPECT_EQ(linesOf(folder.read("r.jsonl")).size(), 2U);
}

TEST(RecordingHostTest, WhatDidNotChangeIsNotWrittenAgain) {
  ScriptedHost world;
  fillLaptop(world);
  const auto lines = linesOf(recordedInterviews(world, laptopQuestions(), 2));
  ASSERT_EQ(lines.size(), 3U);
  for (const char* key : {"\"about\"", "\"bundles\"", "\"smc\"", "\"powerLog\"", "\"files\"",
                          "\"commandOutputs\"", "commandName"}) {
    EXPECT_THAT(lines[1], HasSubstr(key));
    EXPECT_THAT(lines[2], Not(HasSubstr(key)));
  }
  EXPECT_THAT(lines[2], HasSubstr(R"("processes":[{}])"));
}

TEST(RecordingHostTest, RowsWithoutAPossiblePIDAreLeftOut) {
  ScriptedHost world;
  world.add(-1, "/odd");
  world.add(1, "/even");
  Replay replay = replayOf(recordingOf(world, [&](Host& host) {
    std::vector<RawProcess> table;
    host.clock->beginTick();
    host.processes->read(table);
    EXPECT_EQ(table.size(), 2U);
  }));
  std::vector<RawProcess> table;
  replay.host.clock->beginTick();
  replay.host.processes->read(table);
  ASSERT_EQ(table.size(), 1U);
  EXPECT_EQ(table[0].pid, 1);
}

TEST(RecordingHostTest, TablesThatAreReadOverAndOverAreRecordedSoOften) {
  ScriptedHost world;
  std::int32_t pid = 0;
  Replay replay = replayOf(recordingOf(world, [&](Host& host) {
    std::vector<RawProcess> table;
    for (int tick = 0; tick < 2; ++tick) {
      host.clock->beginTick();
      for (std::size_t i = 0; i < 2 * kMostTablesInTick; ++i) {
        world.add(++pid, "/a");
        host.processes->read(table);
      }
    }
  }));
  std::vector<RawProcess> table;
  for (const std::size_t before : {std::size_t{0}, 2 * kMostTablesInTick}) {
    replay.host.clock->beginTick();
    for (std::size_t i = 1; i <= 2 * kMostTablesInTick; ++i) {
      replay.host.processes->read(table);
      EXPECT_EQ(table.size(), before + std::min(i, kMostTablesInTick));
    }
  }
}

TEST(RecordingHostTest, AFullDiskDoesNotDisturbTheRun) {
  ScriptedHost world;
  fillLaptop(world);
  const ScratchFolder folder;
  const auto writer = writerIn(folder);
  TickAnswers answers;
  {
    const FullDisk disk(2000);
    Host host = recordingHost(world.host(), writer);
    for (int tick = 0; tick < 3; ++tick) answers = interview(host, laptopQuestions());
  }
  EXPECT_EQ(answers.table.size(), world.processes.size());
  EXPECT_THAT(writer->problem(), HasSubstr("cannot record to "));
  EXPECT_EQ(folder.read("r.jsonl").size(), 2000U);
}

// Everything that a folder source can be asked about those paths.
std::string folderAnswers(Host& host) {
  std::string answers;
  const auto base = host.folders->baseFolders();
  answers += base ? base->cache + " " + base->data : "none";
  for (const char* path : {"/Users/ada", "/Users/ada/cache", "/Users/ada/link", "/Users/ada/empty",
                           "/Users/ada/cache/\xff", "/none", ""}) {
    const auto facts = host.folders->facts(path);
    MeasureWatch watch;
    answers += fmt::format("\n{}: {} {} {} {}", path, host.folders->resolved(path).value_or("?"),
                           host.folders->exists(path),
                           facts ? fmt::format("{} {} {}", static_cast<int>(facts->kind),
                                               facts->modified, facts->identity.inode)
                                 : "?",
                           host.folders->measure(path, watch).value_or(-1));
    for (const FolderEntry& entry : host.folders->list(path)) {
      answers += fmt::format(", {} {} {} {}", entry.name, static_cast<int>(entry.kind),
                             entry.modified, entry.hidden);
    }
  }
  return answers;
}

void fillFolders(FolderWorld& folders) {
  folders.base = BaseFolders{.cache = "/Users/ada/.cache", .data = "/Users/ada/.local/share"};
  folders.folder("/Users/ada/cache", 5.5);
  folders.folder("/Users/ada/empty");
  folders.file("/Users/ada/cache/\xff", 4096, 6);
  folders.file("/Users/ada/cache/.hidden", 512, 7, "text");
  folders.link("/Users/ada/link", "/Users/ada/cache");
}

TEST(RecordingHostTest, FoldersAreReplayedAsTheyStoodInEachTick) {
  ScriptedHost world;
  FolderWorld folders;
  fillFolders(folders);
  std::vector<std::string> given;
  Replay replay = replayOf(recordingOf(
      world,
      [&](Host& live) {
        live.clock->beginTick();
        given.push_back(folderAnswers(live));
        live.clock->beginTick();
        given.push_back(folderAnswers(live));
        folders.remove("/Users/ada/cache/\xff");
        folders.remove("/Users/ada/link");
        folders.file("/Users/ada/empty/new", 8192);
        live.clock->beginTick();
        given.push_back(folderAnswers(live));
      },
      &folders));
  EXPECT_EQ(given[0], given[1]);
  EXPECT_NE(given[1], given[2]);
  for (const std::string& answers : given) {
    replay.host.clock->beginTick();
    EXPECT_EQ(folderAnswers(replay.host), answers);
  }
}

TEST(RecordingHostTest, AMeasurementThatWasAbandonedIsNoAnswer) {
  ScriptedHost world;
  FolderWorld folders;
  fillFolders(folders);
  const std::string recording = recordingOf(
      world,
      [&](Host& live) {
        live.clock->beginTick();
        MeasureWatch watch;
        EXPECT_EQ(live.folders->measure("/Users/ada/cache", watch), 4608);
        watch.abandon();
        EXPECT_EQ(live.folders->measure("/Users/ada/cache", watch), std::nullopt);
      },
      &folders);
  Replay replay = replayOf(recording);
  replay.host.clock->beginTick();
  MeasureWatch watch;
  EXPECT_EQ(replay.host.folders->measure("/Users/ada/cache", watch), 4608);
  EXPECT_EQ(watch.bytes(), 4608);
  watch.abandon();
  EXPECT_EQ(replay.host.folders->measure("/Users/ada/cache", watch), std::nullopt);
}

TEST(RecordingHostTest, NothingIsMovedInAReplay) {
  ScriptedHost world;
  FolderWorld folders;
  fillFolders(folders);
  Replay replay = replayOf(recordingOf(
      world,
      [&](Host& live) {
        live.clock->beginTick();
        live.folders->facts("/Users/ada/cache");
      },
      &folders));
  replay.host.clock->beginTick();
  const auto facts = replay.host.folders->facts("/Users/ada/cache");
  ASSERT_TRUE(facts);
  EXPECT_EQ(replay.host.trash->moveToTrash("/Users/ada/cache", facts->identity),
            TrashMove{.outcome = TrashOutcome::failed});
  EXPECT_TRUE(folders.has("/Users/ada/cache"));
}

struct ConstantLog final : PowerLogSource {
  std::string read() override { return "log"; }
};

// 50 MB that are no UTF-8, and so a third longer in the recording.
TEST(RecordingHostTest, OfALongPowerLogTheEndIsRecorded) {
  ScriptedHost world;
  world.powerLog = std::string(50'000'000, '\xED') + "\nend of the log\n";
  const std::string recording = recordingOf(world, [](Host& host) {
    host.clock->beginTick();
    host.powerLog->read();
  });
  EXPECT_LT(recording.size(), 25'000'000u);
  Replay replay = replayOf(recording);
  replay.host.clock->beginTick();
  const std::string log = replay.host.powerLog->read();
  EXPECT_EQ(log.size(), PowerLogSource::kMostBytes);
  EXPECT_TRUE(world.powerLog.ends_with(log));
}

TEST(RecordingHostTest, TheLogCanBeReadBesideTheTicks) {
  constexpr int kTicks = 500;
  const ScratchFolder folder;
  {
    Host live = absentHost();
    live.powerLog = std::make_unique<ConstantLog>();
    Host host = recordingHost(std::move(live), writerIn(folder));
    std::thread reader([&] {
      for (int i = 0; i < kTicks; ++i) host.powerLog->read();
    });
    for (int i = 0; i < kTicks; ++i) {
      host.clock->beginTick();
      host.clock->uptime();
    }
    reader.join();
  }
  Replay replay = replayOf(folder.read("r.jsonl"));
  EXPECT_EQ(replay.ticks, std::uint64_t{kTicks});
  while (!replay.finished()) replay.host.clock->beginTick();
  EXPECT_EQ(replay.host.powerLog->read(), "log");
}

}  // namespace
}  // namespace embrix
