#include "hosts/linux/process_control.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/resource.h>

#include <limits>
#include <map>
#include <string>
#include <vector>

#include "captured_tree.h"
#include "fakes/manual_scheduler.h"
#include "hosts/linux/calmed_process.h"
#include "hosts/linux/process_source.h"
#include "obedient_child.h"

namespace embrix {
namespace {

using testing::SizeIs;

// As the process table tells it; all zero when it does not.
RawProcess rowOf(pid_t pid) {
  std::vector<RawProcess> table;
  LinuxProcessSource().read(table);
  for (const RawProcess& row : table) {
    if (row.pid == pid) return row;
  }
  return {};
}

ProcessIdentity identityOf(pid_t pid) {
  const RawProcess row = rowOf(pid);
  return {.pid = row.pid, .startTime = static_cast<std::int64_t>(row.startTime)};
}

// What every thread of the process has, by thread id.
std::map<std::int32_t, ThreadRights> rightsOf(pid_t pid) {
  ProcFiles files("/proc", 0);
  std::vector<std::int32_t> threads;
  files.numbersIn(ProcPath(pid, "task").text(), threads);
  std::map<std::int32_t, ThreadRights> rights;
  for (const std::int32_t thread : threads) {
    if (const auto found = ThreadRights::of(thread)) rights.emplace(thread, *found);
  }
  return rights;
}

void expectSlowed(const ThreadRights& now, const CpuSet& before) {
  EXPECT_TRUE(now.cpus.isWithin(before));
  // A machine of one CPU has nowhere to move a thread to.
  if (before.numbers().size() > 1) {
    EXPECT_NE(now.cpus, before);
  }
  EXPECT_EQ(now.io, kIdleIoPriority);
}

void expectSame(const ThreadRights& now, const ThreadRights& before) {
  EXPECT_EQ(now.cpus.numbers(), before.cpus.numbers());
  EXPECT_EQ(now.io, before.io);
}

// With each test run as whoever runs the tests, and as an ordinary user.
class LinuxProcessControlTest : public testing::Test {
 protected:
  static void asBothUsers(const std::function<void()>& body) {
    body();
    asOrdinaryUser(body);
  }

  static const CpuSet& allCpus() {
    static const CpuSet kAll = CpuSet::ofThread(0).value_or(CpuSet());
    return kAll;
  }
};

TEST_F(LinuxProcessControlTest, EveryThreadIsSlowedAndHasExactlyWhatItHadAfterwards) {
  asBothUsers([] {
    ManualScheduler scheduler;
    LinuxProcessControl control(scheduler);
    ObedientChild child;
    child.startThread();
    child.startBoundThread();
    child.startThread();
    const auto before = rightsOf(child.pid());
    ASSERT_THAT(before, SizeIs(4));
    const ProcessIdentity process = identityOf(child.pid());

    EXPECT_EQ(control.calm(process), 0);
    const auto calm = rightsOf(child.pid());
    ASSERT_THAT(calm, SizeIs(4));
    for (const auto& [thread, rights] : calm) expectSlowed(rights, allCpus());

    EXPECT_EQ(control.restore(process), 0);
    const auto after = rightsOf(child.pid());
    ASSERT_THAT(after, SizeIs(4));
    for (const auto& [thread, rights] : after) expectSame(rights, before.at(thread));
  });
}

TEST_F(LinuxProcessControlTest, ADiskPriorityOfItsOwnComesBack) {
  asBothUsers([] {
    constexpr IoPriority kBestEffortSix = 2 << 13 | 6;
    ManualScheduler scheduler;
    LinuxProcessControl control(scheduler);
    ObedientChild child;
    ASSERT_EQ(setIoPriority(child.pid(), kBestEffortSix), 0);
    const ProcessIdentity process = identityOf(child.pid());
    EXPECT_EQ(control.calm(process), 0);
    EXPECT_EQ(ioPriority(child.pid()), kIdleIoPriority);
    EXPECT_EQ(control.restore(process), 0);
    EXPECT_EQ(ioPriority(child.pid()), kBestEffortSix);
  });
}

TEST_F(LinuxProcessControlTest, CalmingAgainDoesNothing) {
  asBothUsers([] {
    ManualScheduler scheduler;
    LinuxProcessControl control(scheduler);
    ObedientChild child;
    const auto before = rightsOf(child.pid());
    const ProcessIdentity process = identityOf(child.pid());
    EXPECT_EQ(control.calm(process), 0);
    EXPECT_EQ(control.calm(process), 0);
    EXPECT_EQ(control.restore(process), 0);
    expectSame(rightsOf(child.pid()).at(child.pid()), before.at(child.pid()));
  });
}

TEST_F(LinuxProcessControlTest, RestoringOneThatIsNotCalmDoesNothing) {
  ManualScheduler scheduler;
  LinuxProcessControl control(scheduler);
  ObedientChild child;
  const auto before = rightsOf(child.pid());
  EXPECT_EQ(control.restore(identityOf(child.pid())), 0);
  expectSame(rightsOf(child.pid()).at(child.pid()), before.at(child.pid()));
}

TEST_F(LinuxProcessControlTest, AThreadThatStartedMeanwhileIsFreedAsWell) {
  asBothUsers([] {
    ManualScheduler scheduler;
    LinuxProcessControl control(scheduler);
    ObedientChild child;
    const auto before = rightsOf(child.pid());
    const ProcessIdentity process = identityOf(child.pid());
    EXPECT_EQ(control.calm(process), 0);
    child.startThread();
    child.startThread();
    const auto calm = rightsOf(child.pid());
    ASSERT_THAT(calm, SizeIs(3));
    for (const auto& [thread, rights] : calm) expectSlowed(rights, allCpus());
    EXPECT_EQ(control.restore(process), 0);
    for (const auto& [thread, rights] : rightsOf(child.pid())) {
      expectSame(rights, before.at(child.pid()));
    }
  });
}

TEST_F(LinuxProcessControlTest, WhatOthersChangedMeanwhileIsLeft) {
  constexpr IoPriority kBestEffortSix = 2 << 13 | 6;
  ManualScheduler scheduler;
  LinuxProcessControl control(scheduler);
  ObedientChild child;
  const ProcessIdentity process = identityOf(child.pid());
  EXPECT_EQ(control.calm(process), 0);
  // The first CPU is not among the last quarter, where there are two.
  const CpuSet chosen = CpuSet::of({allCpus().numbers().front()});
  ASSERT_EQ(chosen.applyTo(child.pid()), 0);
  ASSERT_EQ(setIoPriority(child.pid(), kBestEffortSix), 0);
  EXPECT_EQ(control.restore(process), 0);
  const auto after = rightsOf(child.pid()).at(child.pid());
  EXPECT_EQ(after.cpus, chosen);
  EXPECT_EQ(after.io, kBestEffortSix);
}

TEST_F(LinuxProcessControlTest, AChildThatStartedMeanwhileIsFreedWithItsParent) {
  asBothUsers([] {
    ManualScheduler scheduler;
    LinuxProcessControl control(scheduler);
    ObedientChild child;
    const pid_t elder = child.startChild();
    const auto before = rightsOf(child.pid()).at(child.pid());
    const ProcessIdentity process = identityOf(child.pid());
    EXPECT_EQ(control.calm(process), 0);
    const pid_t younger = child.startChild();
    expectSame(rightsOf(elder).at(elder), before);
    expectSlowed(rightsOf(younger).at(younger), allCpus());
    EXPECT_EQ(control.restore(process), 0);
    scheduler.advance(0);
    expectSame(rightsOf(younger).at(younger), before);
  });
}

TEST_F(LinuxProcessControlTest, AnOrphanIsFreedWhenItsMakerIsRestored) {
  asBothUsers([] {
    ManualScheduler scheduler;
    LinuxProcessControl control(scheduler);
    ObedientChild child;
    const auto before = rightsOf(child.pid()).at(child.pid());
    const ProcessIdentity process = identityOf(child.pid());
    EXPECT_EQ(control.calm(process), 0);
    const pid_t orphan = child.startOrphan();
    expectSlowed(rightsOf(orphan).at(orphan), allCpus());
    EXPECT_EQ(control.restore(process), 0);
    scheduler.advance(0);
    expectSame(rightsOf(orphan).at(orphan), before);
  });
}

TEST_F(LinuxProcessControlTest, WhatACalmedProcessLeftBehindIsFreedWhenTheNextIsCalmed) {
  asBothUsers([] {
    ManualScheduler scheduler;
    LinuxProcessControl control(scheduler);
    ObedientChild other;
    pid_t orphan = 0;
    ThreadRights before;
    ObedientChild child;
    before = rightsOf(child.pid()).at(child.pid());
    EXPECT_EQ(control.calm(identityOf(child.pid())), 0);
    orphan = child.startOrphan();
    ::kill(child.pid(), SIGKILL);
    child.wait();
    EXPECT_EQ(control.calm(identityOf(other.pid())), 0);
    expectSame(rightsOf(orphan).at(orphan), before);
  });
}

TEST_F(LinuxProcessControlTest, AChildOfACalmedProcessStaysCalmWithIt) {
  asBothUsers([] {
    ManualScheduler scheduler;
    LinuxProcessControl control(scheduler);
    ObedientChild first;
    ObedientChild second;
    const ProcessIdentity firstProcess = identityOf(first.pid());
    EXPECT_EQ(control.calm(identityOf(second.pid())), 0);
    EXPECT_EQ(control.calm(firstProcess), 0);
    const pid_t younger = second.startChild();
    EXPECT_EQ(control.restore(firstProcess), 0);
    scheduler.advance(0);
    expectSlowed(rightsOf(younger).at(younger), allCpus());
  });
}

// What it inherited is not its own: both end with what the parent had.
TEST_F(LinuxProcessControlTest, AChildThatWasCalmedBesidesItsParentIsFreedInEitherOrder) {
  for (const bool parentFirst : {true, false}) {
    asBothUsers([parentFirst] {
      ManualScheduler scheduler;
      LinuxProcessControl control(scheduler);
      ObedientChild child;
      const auto before = rightsOf(child.pid()).at(child.pid());
      const ProcessIdentity parent = identityOf(child.pid());
      EXPECT_EQ(control.calm(parent), 0);
      const pid_t younger = child.startChild();
      const ProcessIdentity heir = identityOf(younger);
      EXPECT_EQ(control.calm(heir), 0);

      EXPECT_EQ(control.restore(parentFirst ? parent : heir), 0);
      scheduler.advance(0);
      const auto kept = parentFirst ? younger : child.pid();
      expectSlowed(rightsOf(kept).at(kept), allCpus());
      EXPECT_EQ(control.restore(parentFirst ? heir : parent), 0);
      scheduler.advance(0);
      expectSame(rightsOf(younger).at(younger), before);
      expectSame(rightsOf(child.pid()).at(child.pid()), before);
    });
  }
}

TEST_F(LinuxProcessControlTest, WhoeverIsCalmAtTheEndGetsItsSpeedBack) {
  asBothUsers([] {
    ManualScheduler scheduler;
    ObedientChild child;
    const auto before = rightsOf(child.pid()).at(child.pid());
    pid_t younger = 0;
    {
      LinuxProcessControl control(scheduler);
      EXPECT_EQ(control.calm(identityOf(child.pid())), 0);
      younger = child.startChild();
    }
    expectSame(rightsOf(child.pid()).at(child.pid()), before);
    expectSame(rightsOf(younger).at(younger), before);
  });
}

TEST_F(LinuxProcessControlTest, TerminateAsksTheProcessToEnd) {
  asBothUsers([] {
    ManualScheduler scheduler;
    LinuxProcessControl control(scheduler);
    ObedientChild child;
    EXPECT_EQ(control.terminate(identityOf(child.pid())), 0);
    const int status = child.wait();
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
  });
}

TEST_F(LinuxProcessControlTest, APidThatAnotherProcessHasByNowIsLeftAlone) {
  ManualScheduler scheduler;
  LinuxProcessControl control(scheduler);
  ObedientChild child;
  const auto before = rightsOf(child.pid()).at(child.pid());
  const ProcessIdentity now = identityOf(child.pid());
  for (const std::int64_t startTime :
       {now.startTime - 1, now.startTime + 1, std::int64_t{0}, std::int64_t{-1},
        std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()}) {
    const ProcessIdentity former{.pid = now.pid, .startTime = startTime};
    EXPECT_EQ(control.calm(former), ESRCH);
    EXPECT_EQ(control.restore(former), ESRCH);
    EXPECT_EQ(control.terminate(former), ESRCH);
  }
  expectSame(rightsOf(child.pid()).at(child.pid()), before);
  EXPECT_EQ(::waitpid(child.pid(), nullptr, WNOHANG), 0) << "the child was signalled";
}

TEST_F(LinuxProcessControlTest, AProcessThatWentIsNotThere) {
  ManualScheduler scheduler;
  LinuxProcessControl control(scheduler);
  ObedientChild child;
  const ProcessIdentity process = identityOf(child.pid());
  EXPECT_EQ(control.calm(process), 0);
  ::kill(child.pid(), SIGKILL);
  child.wait();
  EXPECT_EQ(control.restore(process), ESRCH);
  EXPECT_EQ(control.calm(process), ESRCH);
  EXPECT_EQ(control.terminate(process), ESRCH);
}

TEST_F(LinuxProcessControlTest, NumbersThatNoProcessHasAreNotThere) {
  // Pids of 0 and below mean whole groups of processes to other calls.
  asOrdinaryUser([] {
    ManualScheduler scheduler;
    LinuxProcessControl control(scheduler);
    for (const std::int32_t pid : {0, -1, -::getpid(), std::numeric_limits<std::int32_t>::min(),
                                   std::numeric_limits<std::int32_t>::max()}) {
      const ProcessIdentity nobody{.pid = pid, .startTime = 0};
      EXPECT_EQ(control.calm(nobody), ESRCH) << pid;
      EXPECT_EQ(control.restore(nobody), ESRCH) << pid;
      EXPECT_EQ(control.terminate(nobody), ESRCH) << pid;
    }
  });
}

TEST_F(LinuxProcessControlTest, AnotherUsersProcessIsRefusedAndStaysAsItIs) {
  ObedientChild child;
  // Whoever runs the tests, this is somebody else's: the superuser's child or the first process.
  const pid_t pid = ::geteuid() == 0 ? child.pid() : 1;
  const auto before = rightsOf(pid).at(pid);
  asOrdinaryUser([pid] {
    ManualScheduler scheduler;
    LinuxProcessControl control(scheduler);
    const ProcessIdentity process = identityOf(pid);
    ASSERT_EQ(process.pid, pid);
    ASSERT_NE(rowOf(pid).uid, ::geteuid());
    EXPECT_EQ(control.calm(process), EPERM);
    EXPECT_EQ(control.terminate(process), EPERM);
    EXPECT_EQ(control.restore(process), 0);
  });
  expectSame(rightsOf(pid).at(pid), before);
}

TEST_F(LinuxProcessControlTest, EfficiencyCoresAreWhereAProcessGoes) {
  const int first = allCpus().numbers().front();
  CapturedTree tree;
  // Of the two only the first can be counted on to be there.
  for (const int number : {first, first + 1}) {
    const std::string cpu = "sys/devices/system/cpu/cpu" + std::to_string(number);
    tree.write(cpu + "/topology/core_cpus_list", std::to_string(number) + "\n");
    tree.write(cpu + "/cpu_capacity", number == first ? "400\n" : "1024\n");
  }
  ManualScheduler scheduler;
  LinuxProcessControl control(scheduler, {.procRoot = "/proc", .root = tree.root()});
  ObedientChild child;
  EXPECT_EQ(control.calm(identityOf(child.pid())), 0);
  EXPECT_EQ(rightsOf(child.pid()).at(child.pid()).cpus, CpuSet::of({first}));
}

TEST_F(LinuxProcessControlTest, AMachineThatTellsNoCoresHasALastQuarterAllTheSame) {
  CapturedTree tree;
  ManualScheduler scheduler;
  LinuxProcessControl control(scheduler, {.procRoot = "/proc", .root = tree.root()});
  ObedientChild child;
  const auto before = rightsOf(child.pid()).at(child.pid());
  const ProcessIdentity process = identityOf(child.pid());
  EXPECT_EQ(control.calm(process), 0);
  expectSlowed(rightsOf(child.pid()).at(child.pid()), before.cpus);
  EXPECT_EQ(control.restore(process), 0);
  expectSame(rightsOf(child.pid()).at(child.pid()), before);
}

TEST_F(LinuxProcessControlTest, WithoutAProcFileSystemNobodyIsThere) {
  CapturedTree tree;
  ManualScheduler scheduler;
  LinuxProcessControl control(scheduler, {.procRoot = tree.root(), .root = "/"});
  ObedientChild child;
  EXPECT_EQ(control.terminate(identityOf(child.pid())), ESRCH);
  EXPECT_EQ(::waitpid(child.pid(), nullptr, WNOHANG), 0) << "the child was signalled";
}

// Why calm is not made of these: a kernel on which this changes would offer a better one.
TEST_F(LinuxProcessControlTest, NiceAndTheIdlePolicyCannotBeTakenBackByAnOrdinaryUser) {
  asOrdinaryUser([] {
    const rlimit none{0, 0};
    ASSERT_EQ(::setrlimit(RLIMIT_NICE, &none), 0);
    ObedientChild child;
    const auto pid = static_cast<id_t>(child.pid());
    ASSERT_EQ(::setpriority(PRIO_PROCESS, pid, 5), 0);
    EXPECT_EQ(::setpriority(PRIO_PROCESS, pid, 0), -1);
    const sched_param parameters{};
    ASSERT_EQ(::sched_setscheduler(child.pid(), SCHED_IDLE, &parameters), 0);
    EXPECT_EQ(::sched_setscheduler(child.pid(), SCHED_OTHER, &parameters), -1);
  });
}

}  // namespace
}  // namespace embrix
