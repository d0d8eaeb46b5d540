// A program that is killed while it saves: every file is then the old one or the new one, and
// whole.
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <filesystem>
#include <new>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "fakes/scratch_folder.h"
#include "records/history.h"
#include "records/history_store.h"
#include "sample_records.h"

namespace embrix {
namespace {

constexpr int kKills = 600;
constexpr std::size_t kFiles = 5;
constexpr std::size_t kPoints = 60;

// What the child tells its parent, who outlives it. The version that each file is going to have is
// told before it is saved, and the one that it has after.
struct Progress {
  std::array<std::atomic<std::uint32_t>, kFiles> begun = {};
  std::array<std::atomic<std::uint32_t>, kFiles> done = {};
  std::atomic<std::uint32_t> saves = 0;
};

Progress* sharedProgress() {
  void* memory =
      ::mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  return memory == MAP_FAILED ? nullptr : new (memory) Progress;
}

// Records that bear the version in more than one place, so that a mixture is noticed.
HistorySnapshot pointsOf(std::uint32_t version) {
  std::vector<HistoryPoint> points(kPoints, fullPoint());
  for (HistoryPoint& point : points) point.cpuPercent = version;
  return HistorySnapshot(points);
}

DayLedger ledgerOf(std::uint32_t version) {
  DayLedger ledger = fullLedger();
  ledger.totalWattHours = ledger.spellSeconds = version;
  return ledger;
}

Archive archiveOf(std::uint32_t version) {
  std::vector<DailyRecord> days(10, fullDay());
  for (DailyRecord& day : days) day.wattHours = version;
  return Archive(std::move(days));
}

DischargeSession sessionOf(std::uint32_t version) {
  DischargeSession session = fullSession();
  session.totalWattHours = session.asleepWattHours = version;
  return session;
}

PowerBaseline baselineOf(std::uint32_t version) {
  return {std::vector<float>(500, static_cast<float>(version)), static_cast<double>(version)};
}

// Saves again and again, until it is killed.
[[noreturn]] void saveForEver(const HistoryStore& store, Progress& progress) {
  store.removeLeftovers();
  for (std::uint32_t version = progress.begun[0] + 1;; ++version) {
    const auto save = [&](std::size_t file, bool (*write)(const HistoryStore&, std::uint32_t)) {
      progress.begun[file] = version;
      if (!write(store, version)) ::_exit(1);
      progress.done[file] = version;
      ++progress.saves;
    };
    using Store = const HistoryStore&;
    save(0, [](Store s, std::uint32_t v) { return s.save(pointsOf(v)); });
    save(1, [](Store s, std::uint32_t v) { return s.saveLedger(ledgerOf(v)); });
    save(2, [](Store s, std::uint32_t v) { return s.saveArchive(archiveOf(v)); });
    save(3, [](Store s, std::uint32_t v) { return s.saveDischarge(sessionOf(v)); });
    save(4, [](Store s, std::uint32_t v) { return s.saveBaseline(baselineOf(v)); });

    ++version;
    for (auto& begun : progress.begun) begun = version;
    if (!store.saveAll(pointsOf(version), ledgerOf(version), archiveOf(version), sessionOf(version),
                       baselineOf(version))) {
      ::_exit(1);
    }
    for (auto& done : progress.done) done = version;
    ++progress.saves;
  }
}

// The version that stands in each file, 0 for a file that is not there or not whole.
std::array<std::uint32_t, kFiles> versionsIn(const HistoryStore& store) {
  std::array<std::uint32_t, kFiles> versions = {};
  const auto points = store.load(0);
  if (!points.empty()) versions[0] = static_cast<std::uint32_t>(points.front().cpuPercent);
  EXPECT_TRUE(points.empty() || points.size() == kPoints);
  for (const HistoryPoint& point : points) EXPECT_EQ(point.cpuPercent, versions[0]);
  if (const auto ledger = store.loadLedger()) {
    versions[1] = static_cast<std::uint32_t>(ledger->totalWattHours);
    EXPECT_EQ(*ledger, ledgerOf(versions[1]));
  }
  if (const auto archive = store.loadArchive()) {
    versions[2] = static_cast<std::uint32_t>(archive->days().front().wattHours);
    EXPECT_EQ(*archive, archiveOf(versions[2]));
  }
  if (const auto session = store.loadDischarge()) {
    versions[3] = static_cast<std::uint32_t>(session->totalWattHours);
    EXPECT_EQ(*session, sessionOf(versions[3]));
  }
  if (const auto baseline = store.loadBaseline()) {
    versions[4] = static_cast<std::uint32_t>(baseline->lastAdded());
    EXPECT_EQ(*baseline, baselineOf(versions[4]));
  }
  return versions;
}

// Until the child has saved that many files more, and then a moment that no clock has measured.
void wait(const Progress& progress, std::uint32_t saves, int turns) {
  const std::uint32_t until = progress.saves + saves;
  while (progress.saves < until) ::usleep(0);
  std::atomic<int> left = turns;
  while (--left > 0) {
  }
}

TEST(KilledSaveTest, EveryFileIsTheOldOneOrTheNewOneAtWhateverMomentTheProgramIsKilled) {
  const ScratchFolder folder;
  const HistoryStore store{folder.path()};
  Progress* const progress = sharedProgress();
  ASSERT_NE(progress, nullptr);
  std::mt19937 random(std::random_device{}());
  int leftovers = 0;
  int torn = 0;
  for (int kill = 0; kill < kKills; ++kill) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) saveForEver(store, *progress);
    wait(*progress, 1 + random() % 4, static_cast<int>(random() % 400'000));
    ASSERT_EQ(::kill(child, SIGKILL), 0);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << "a save failed";

    const auto versions = versionsIn(store);
    std::size_t unfinished = 0;
    for (std::size_t file = 0; file < kFiles; ++file) {
      ASSERT_GE(versions[file], progress->done[file]) << "kill " << kill << " file " << file;
      ASSERT_LE(versions[file], progress->begun[file]) << "kill " << kill << " file " << file;
      if (progress->begun[file] != progress->done[file]) ++unfinished;
    }
    torn += static_cast<int>(unfinished);
    // At most those that were being written; those of earlier runs are gone.
    std::size_t expected = 0;
    for (const std::uint32_t version : versions) expected += version > 0 ? 1 : 0;
    const std::size_t beside = folder.names().size() - expected;
    ASSERT_LE(beside, unfinished) << "kill " << kill;
    leftovers += static_cast<int>(beside);
  }
  // The moments were well chosen: many children died while they saved.
  EXPECT_GT(torn, kKills / 10);
  EXPECT_GT(leftovers, 0);
  ::munmap(progress, sizeof(Progress));
}

}  // namespace
}  // namespace embrix
