#include "hosts/linux/process_source.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "captured_tree.h"

namespace embrix {
namespace {

const std::uint64_t kTickNS = 1'000'000'000 / static_cast<std::uint64_t>(sysconf(_SC_CLK_TCK));
const std::uint64_t kPage = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));

// What a captured process has in its files.
struct Captured {
  std::int32_t pid = 0;
  std::string name = "work";
  std::int32_t ppid = 1;
  unsigned uid = 1000;
  std::uint64_t userTicks = 0;
  std::uint64_t systemTicks = 0;
  int threads = 1;
  std::uint64_t startTicks = 5000;
  std::uint64_t pages = 10;
  std::uint64_t runNS = 0;
  std::uint64_t slices = 0;
};

class LinuxProcessSourceTest : public testing::Test {
 protected:
  LinuxProcessSourceTest() { tree.write("stat", "cpu  1 2 3 4 5 6 7 8\nbtime 1700000000\n"); }

  void put(const Captured& p) {
    const std::string folder = std::to_string(p.pid);
    tree.write(
        folder + "/stat",
        fmt::format("{} ({}) S {} 1 1 0 -1 0 0 0 0 0 {} {} 0 0 20 0 {} 0 {} 0 {} 0\n", p.pid,
                    p.name, p.ppid, p.userTicks, p.systemTicks, p.threads, p.startTicks, p.pages));
    tree.write(folder + "/schedstat", fmt::format("{} 0 {}\n", p.runNS, p.slices));
    tree.write(folder + "/status", fmt::format("Name:\t{}\nUid:\t5\t{}\t5\t5\n", p.name, p.uid));
    tree.write(folder + "/task/" + folder + "/schedstat",
               fmt::format("{} 0 {}\n", p.runNS, p.slices));
  }

  LinuxProcessSource source(LinuxProcessSource::Options options = {.packageEnergyFile = "/none"}) {
    return LinuxProcessSource(tree.root(), options);
  }

  static const RawProcess* find(const std::vector<RawProcess>& table, std::int32_t pid) {
    const auto found = std::find_if(table.begin(), table.end(),
                                    [pid](const RawProcess& p) { return p.pid == pid; });
    return found == table.end() ? nullptr : &*found;
  }

  CapturedTree tree;
  std::vector<RawProcess> table;
};

TEST_F(LinuxProcessSourceTest, TellsEachFieldOfAProcess) {
  put({.pid = 42,
       .name = "a b) c",
       .ppid = 7,
       .uid = 1001,
       .userTicks = 30,
       .systemTicks = 20,
       .startTicks = 250,
       .pages = 3,
       .runNS = 505'000'000,
       .slices = 17});
  auto linux = source();
  linux.read(table);
  ASSERT_EQ(table.size(), 1u);
  const RawProcess& process = table.front();
  EXPECT_EQ(process.pid, 42);
  EXPECT_EQ(process.ppid, 7);
  EXPECT_EQ(process.uid, 1001u);
  EXPECT_EQ(process.commandName, "a b) c");
  EXPECT_EQ(process.startTime, 1700000000 + 250 * kTickNS / 1'000'000'000);
  ASSERT_TRUE(process.usage);
  EXPECT_EQ(process.usage->userTime + process.usage->systemTime, 505'000'000u);
  EXPECT_EQ(process.usage->packageIdleWakeups, 17u);
  EXPECT_EQ(process.usage->footprint, 3 * kPage);
  EXPECT_EQ(process.usage->energyNJ, static_cast<std::uint64_t>(505e6 * kAssumedWattsPerBusyCore));
}

TEST_F(LinuxProcessSourceTest, TableIsInAscendingOrderOfPids) {
  for (const std::int32_t pid : {300, 4, 77, 1000}) put({.pid = pid});
  auto linux = source();
  linux.read(table);
  std::vector<std::int32_t> pids;
  for (const RawProcess& process : table) pids.push_back(process.pid);
  EXPECT_EQ(pids, (std::vector<std::int32_t>{4, 77, 300, 1000}));
}

TEST_F(LinuxProcessSourceTest, EmptyOrMissingRootGivesAnEmptyTable) {
  auto empty = source();
  table.resize(3);
  empty.read(table);
  EXPECT_TRUE(table.empty());
  LinuxProcessSource missing(tree.root() + "/nowhere");
  table.resize(3);
  missing.read(table);
  EXPECT_TRUE(table.empty());
}

TEST_F(LinuxProcessSourceTest, ProcessThatHasNotRunIsNotReadAnyFurther) {
  put({.pid = 42, .pages = 3, .runNS = 100});
  auto linux = source();
  linux.read(table);
  put({.pid = 42, .pages = 9, .runNS = 100});
  linux.read(table);
  EXPECT_EQ(table.at(0).usage->footprint, 3 * kPage);
  put({.pid = 42, .pages = 9, .runNS = 101});
  linux.read(table);
  EXPECT_EQ(table.at(0).usage->footprint, 9 * kPage);
}

TEST_F(LinuxProcessSourceTest, PagesTakenFromASleeperShowAfterAWhile) {
  put({.pid = 42, .pages = 900});
  auto linux = source();
  linux.read(table);
  put({.pid = 42, .pages = 1});
  for (int tick = 0; tick < 64; ++tick) linux.read(table);
  EXPECT_EQ(table.at(0).usage->footprint, 1 * kPage);
}

TEST_F(LinuxProcessSourceTest, TimeOfASingleThreadIsExactToTheNanosecond) {
  put({.pid = 42, .runNS = 1'000});
  auto linux = source();
  linux.read(table);
  put({.pid = 42, .runNS = 4'321});
  linux.read(table);
  EXPECT_EQ(table.at(0).usage->userTime, 4'321u);
}

TEST_F(LinuxProcessSourceTest, TimeOfThreadsThatEndedBetweenTwoLooksCounts) {
  put({.pid = 42, .userTicks = 0, .runNS = 1'000'000});
  auto linux = source();
  linux.read(table);
  // The leading thread ran a millisecond more; others that came and went ran 50 clock ticks.
  put({.pid = 42, .userTicks = 50, .runNS = 2'000'000});
  linux.read(table);
  EXPECT_EQ(table.at(0).usage->userTime, 50 * kTickNS);
}

TEST_F(LinuxProcessSourceTest, TimeOfAMultithreadedProcessSumsItsThreads) {
  put({.pid = 42, .userTicks = 100, .systemTicks = 20, .threads = 4, .runNS = 5});
  auto linux = source();
  linux.read(table);
  EXPECT_EQ(table.at(0).usage->userTime, 120 * kTickNS);
  // The leading thread stands still; the others work.
  put({.pid = 42, .userTicks = 180, .systemTicks = 20, .threads = 4, .runNS = 5});
  linux.read(table);
  EXPECT_EQ(table.at(0).usage->userTime, 200 * kTickNS);
}

TEST_F(LinuxProcessSourceTest, ProcessThatBecomesMultithreadedAndBackNeverLosesTime) {
  auto linux = source();
  std::uint64_t last = 0;
  const Captured steps[] = {
      {.pid = 42, .userTicks = 10, .threads = 1, .runNS = 10 * kTickNS + 700},
      {.pid = 42, .userTicks = 11, .threads = 3, .runNS = 11 * kTickNS},
      {.pid = 42, .userTicks = 90, .threads = 3, .runNS = 12 * kTickNS},
      {.pid = 42, .userTicks = 91, .threads = 1, .runNS = 13 * kTickNS},
      {.pid = 42, .userTicks = 93, .threads = 1, .runNS = 15 * kTickNS + 5},
  };
  for (const Captured& step : steps) {
    put(step);
    linux.read(table);
    ASSERT_EQ(table.size(), 1u);
    EXPECT_GE(table.at(0).usage->userTime, last);
    EXPECT_GE(table.at(0).usage->userTime, step.userTicks * kTickNS);
    last = table.at(0).usage->userTime;
  }
  EXPECT_EQ(last, 93 * kTickNS + 5);
}

TEST_F(LinuxProcessSourceTest, WakeupsOfAllThreadsCountAndNeverGoBack) {
  put({.pid = 42, .userTicks = 1, .threads = 2, .slices = 10});
  tree.write("42/task/43/schedstat", "0 0 100\n");
  auto linux = source();
  linux.read(table);
  EXPECT_EQ(table.at(0).usage->packageIdleWakeups, 110u);
  put({.pid = 42, .userTicks = 2, .threads = 2, .slices = 12});
  tree.write("42/task/43/schedstat", "0 0 105\n");
  linux.read(table);
  EXPECT_EQ(table.at(0).usage->packageIdleWakeups, 117u);
  // The second thread ends, a third one starts.
  put({.pid = 42, .userTicks = 3, .threads = 2, .slices = 13});
  tree.remove("42/task/43");
  tree.write("42/task/44/schedstat", "0 0 4\n");
  linux.read(table);
  EXPECT_EQ(table.at(0).usage->packageIdleWakeups, 122u);
}

TEST_F(LinuxProcessSourceTest, PidThatIsGivenAgainIsANewProcess) {
  put({.pid = 42, .name = "old", .userTicks = 500, .startTicks = 100, .runNS = 500 * kTickNS});
  auto linux = source();
  linux.read(table);
  const std::uint64_t firstStart = table.at(0).startTime;
  put({.pid = 42, .name = "new", .startTicks = 90'000, .runNS = 3});
  linux.read(table);
  ASSERT_EQ(table.size(), 1u);
  EXPECT_EQ(table.at(0).commandName, "new");
  EXPECT_EQ(table.at(0).usage->userTime, 3u);
  EXPECT_GT(table.at(0).startTime, firstStart);
}

TEST_F(LinuxProcessSourceTest, ProcessThatVanishesHalfWayIsLeftOut) {
  put({.pid = 42});
  put({.pid = 43});
  tree.remove("43/stat");
  auto linux = source();
  linux.read(table);
  EXPECT_TRUE(find(table, 42));
  EXPECT_FALSE(find(table, 43));
  tree.write("42/schedstat", "");
  tree.write("42/stat", "");
  linux.read(table);
  EXPECT_TRUE(table.empty());
}

TEST_F(LinuxProcessSourceTest, KernelWithoutSchedstatIsReadThroughStat) {
  put({.pid = 42, .userTicks = 7});
  tree.remove("42/schedstat");
  auto linux = source();
  linux.read(table);
  put({.pid = 42, .userTicks = 9});
  tree.remove("42/schedstat");
  linux.read(table);
  EXPECT_EQ(table.at(0).usage->userTime, 9 * kTickNS);
}

TEST_F(LinuxProcessSourceTest, KernelThatCountsNoRunTimeIsReadThroughStat) {
  put({.pid = 42, .userTicks = 70, .runNS = 0});
  auto linux = source();
  linux.read(table);
  put({.pid = 42, .userTicks = 90, .runNS = 0});
  linux.read(table);
  EXPECT_EQ(table.at(0).usage->userTime, 90 * kTickNS);
}

TEST_F(LinuxProcessSourceTest, ChildOfASessionLauncherCountsAsLaunchedBySystem) {
  put({.pid = 1, .name = "systemd", .ppid = 0, .uid = 0});
  put({.pid = 900, .name = "systemd", .ppid = 1});
  put({.pid = 901, .name = "firefox", .ppid = 900});
  put({.pid = 902, .name = "Web Content", .ppid = 901});
  auto linux = source();
  linux.read(table);
  EXPECT_EQ(find(table, 901)->ppid, 1);
  EXPECT_EQ(find(table, 902)->ppid, 901);
  EXPECT_EQ(find(table, 1)->ppid, 0);
}

TEST_F(LinuxProcessSourceTest, OrphanOfADeadParentIsReadAgainThoughItNeverRan) {
  put({.pid = 1, .name = "init", .ppid = 0});
  put({.pid = 50, .name = "shell"});
  put({.pid = 60, .name = "server", .ppid = 50});
  auto linux = source();
  linux.read(table);
  EXPECT_EQ(find(table, 60)->ppid, 50);
  tree.remove("50");
  put({.pid = 60, .name = "server", .ppid = 1});
  linux.read(table);
  EXPECT_EQ(find(table, 60)->ppid, 1);
}

TEST_F(LinuxProcessSourceTest, NewProcessThatGivesUpRootIsItsNewUsers) {
  put({.pid = 1, .name = "init", .ppid = 0, .uid = 0});
  auto linux = source();
  linux.read(table);
  put({.pid = 42, .uid = 0, .runNS = 1});
  linux.read(table);
  EXPECT_EQ(find(table, 42)->uid, 0u);
  put({.pid = 42, .uid = 1000, .runNS = 2});
  linux.read(table);
  EXPECT_EQ(find(table, 42)->uid, 1000u);
}

TEST_F(LinuxProcessSourceTest, ListIsTakenAgainWhenTheLoadAverageSaysThatAProcessCame) {
  tree.write("loadavg", "0.10 0.10 0.10 1/100 500\n");
  put({.pid = 42});
  auto linux = source();
  linux.read(table);
  linux.read(table);
  put({.pid = 43});
  tree.write("loadavg", "0.20 0.10 0.10 3/100 500\n");
  linux.read(table);
  EXPECT_EQ(table.size(), 1u) << "neither the newest pid nor the number of threads moved";
  tree.write("loadavg", "0.20 0.10 0.10 1/101 501\n");
  linux.read(table);
  EXPECT_EQ(table.size(), 2u);
}

TEST_F(LinuxProcessSourceTest, ListIsTakenAgainAfterAWhileWhateverTheLoadAverageSays) {
  tree.write("loadavg", "0.10 0.10 0.10 1/100 500\n");
  put({.pid = 42});
  auto linux = source();
  linux.read(table);
  put({.pid = 43});
  for (int tick = 0; tick < 32; ++tick) linux.read(table);
  EXPECT_EQ(table.size(), 2u);
}

TEST_F(LinuxProcessSourceTest, WithoutRoomForHandlesTheFiguresAreTheSame) {
  for (std::int32_t pid = 10; pid < 40; ++pid) put({.pid = pid, .runNS = 5});
  auto kept = source();
  auto unkept = source({.keptFiles = 4, .packageEnergyFile = "/none"});
  std::vector<RawProcess> other;
  for (std::uint64_t tick = 1; tick < 5; ++tick) {
    for (std::int32_t pid = 10; pid < 40; pid += 3) put({.pid = pid, .runNS = 5 + tick * 100});
    kept.read(table);
    unkept.read(other);
    EXPECT_EQ(table, other);
  }
}

TEST_F(LinuxProcessSourceTest, DeletedExecutableKeepsItsPath) {
  put({.pid = 42});
  tree.link("42/exe", "/opt/tool/bin/server (deleted)");
  put({.pid = 43});
  tree.link("43/exe", "/home/me/odd (deleted) name");
  auto linux = source();
  EXPECT_EQ(linux.executablePath(42), "/opt/tool/bin/server");
  EXPECT_EQ(linux.executablePath(43), "/home/me/odd (deleted) name");
}

TEST_F(LinuxProcessSourceTest, KernelThreadHasNoPath) {
  put({.pid = 2, .name = "kthreadd", .ppid = 0, .uid = 0, .pages = 0});
  auto linux = source();
  linux.read(table);
  EXPECT_EQ(table.at(0).usage->footprint, 0u);
  EXPECT_FALSE(linux.executablePath(2));
}

TEST_F(LinuxProcessSourceTest, LiveTableHoldsThisProcess) {
  LinuxProcessSource live;
  live.read(table);
  const RawProcess* self = find(table, getpid());
  ASSERT_TRUE(self);
  EXPECT_EQ(self->uid, geteuid());
  ASSERT_TRUE(self->usage);
  EXPECT_GT(self->usage->footprint, 0u);
  EXPECT_TRUE(live.executablePath(getpid()));
}

TEST_F(LinuxProcessSourceTest, LiveTimeOfThreadsIsTheirSumToTheNanosecond) {
  const auto clock = [](clockid_t id) {
    timespec time{};
    clock_gettime(id, &time);
    return static_cast<std::uint64_t>(time.tv_sec) * 1'000'000'000 +
           static_cast<std::uint64_t>(time.tv_nsec);
  };
  LinuxProcessSource live;
  live.read(table);
  ASSERT_TRUE(find(table, getpid()));
  const std::uint64_t wakeups = find(table, getpid())->usage->packageIdleWakeups;

  std::vector<std::thread> threads;
  for (int i = 0; i < 3; ++i) {
    threads.emplace_back([&clock] {
      while (clock(CLOCK_THREAD_CPUTIME_ID) < 2 * kTickNS) continue;
    });
  }
  for (std::thread& thread : threads) thread.join();

  const std::uint64_t before = clock(CLOCK_PROCESS_CPUTIME_ID);
  live.read(table);
  const std::uint64_t after = clock(CLOCK_PROCESS_CPUTIME_ID);
  const RawProcess* self = find(table, getpid());
  ASSERT_TRUE(self);
  EXPECT_GE(self->usage->userTime, before);
  EXPECT_LE(self->usage->userTime, after);
  EXPECT_GE(before, 6 * kTickNS);
  EXPECT_GE(self->usage->packageIdleWakeups, wakeups);
}

TEST_F(LinuxProcessSourceTest, LiveChildThatEndsLeavesTheTable) {
  LinuxProcessSource live;
  int hold[2];
  ASSERT_EQ(pipe(hold), 0);
  const pid_t child = fork();
  if (child == 0) {
    close(hold[1]);
    char byte = 0;
    _exit(read(hold[0], &byte, 1) == 0 ? 0 : 1);
  }
  close(hold[0]);
  live.read(table);
  const RawProcess* found = find(table, child);
  ASSERT_TRUE(found);
  const std::uint64_t start = found->startTime;
  live.read(table);
  ASSERT_TRUE(find(table, child));
  EXPECT_EQ(find(table, child)->startTime, start) << "a start time stands still";
  close(hold[1]);
  ASSERT_EQ(waitpid(child, nullptr, 0), child);
  live.read(table);
  EXPECT_FALSE(find(table, child));
}

TEST_F(LinuxProcessSourceTest, LiveNameMayHoldAnythingAndItsProgramMayBeGone) {
  const std::string program =
      std::filesystem::canonical(tree.root()).string() + "/a (b) \x1b[1m\n)c";
  std::filesystem::copy_file("/bin/cat", program);
  int hold[2];
  ASSERT_EQ(pipe(hold), 0);
  const pid_t child = fork();
  if (child == 0) {
    dup2(hold[0], STDIN_FILENO);
    close(hold[0]);
    close(hold[1]);
    execl(program.c_str(), program.c_str(), nullptr);
    _exit(127);
  }
  close(hold[0]);
  LinuxProcessSource live;
  const RawProcess* found = nullptr;
  do {  // until it has become that program
    live.read(table);
    found = find(table, child);
  } while (found != nullptr && found->commandName.substr(0, 1) != "a");
  ASSERT_TRUE(found);
  EXPECT_EQ(found->commandName, "a (b) \x1b[1m\n)c");
  EXPECT_EQ(found->ppid, getpid());
  EXPECT_EQ(live.executablePath(child), program);
  std::filesystem::remove(program);
  EXPECT_EQ(live.executablePath(child), program);
  close(hold[1]);
  ASSERT_EQ(waitpid(child, nullptr, 0), child);
  EXPECT_EQ(live.executablePath(child), std::nullopt);
}

// Asked by an unprivileged child even where the tests run as root.
TEST_F(LinuxProcessSourceTest, LiveProcessOfAnotherUserStandsThereWithoutItsPath) {
  const bool isRoot = geteuid() == 0;
  const pid_t other = isRoot ? getpid() : 1;
  const auto looks = [&] {
    constexpr uid_t kNobody = 65534;
    if (isRoot && setresuid(kNobody, kNobody, kNobody) != 0) return false;
    char target[16];
    const bool isReadable =
        readlink(("/proc/" + std::to_string(other) + "/exe").c_str(), target, sizeof target) >= 0;
    LinuxProcessSource live;
    live.read(table);
    const RawProcess* self = find(table, getpid());
    const RawProcess* found = find(table, other);
    return self != nullptr && self->uid == geteuid() && found != nullptr && found->usage &&
           (!isRoot || found->uid == 0) && !found->commandName.empty() && !(isRoot && isReadable) &&
           live.executablePath(other).has_value() == isReadable;
  };
  const pid_t child = fork();
  if (child == 0) _exit(looks() ? 0 : 1);
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace embrix
