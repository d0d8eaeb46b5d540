// The cleanup on real threads and a real disk: scans that end and scans that are given up, clearing
// and putting back, all at once. For the thread sanitizer above all.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <thread>
#include <vector>

#include <fmt/format.h>

#include "base/live_scheduler.h"
#include "cleanup/cleanup.h"
#include "fakes/scratch_folder.h"
#include "host/local_files.h"
#include "hosts/linux/folder_source.h"
#include "hosts/linux/trash.h"
#include "manifest.h"

namespace embrix {
namespace {

namespace fs = std::filesystem;

constexpr int kRounds = 16;
constexpr int kFolders = 12;
// More than one thread measures alone: several share each folder.
constexpr int kFilesEach = 300;

// No tool runs, and there is none to ask.
class NoPrograms final : public CommandRunner {
 public:
  std::optional<std::string> output(const std::string&, const std::vector<std::string>&) override {
    return "";
  }
  std::optional<std::string> successfulOutput(const std::string&,
                                              const std::vector<std::string>&) override {
    return std::nullopt;
  }
  bool start(const std::string&, const std::vector<std::string>&) override { return false; }
};

class CleanupThreadsTest : public testing::Test {
 protected:
  CleanupThreadsTest() {
    const fs::path derived = home / "Library/Developer/Xcode/DerivedData";
    for (const fs::path& folder :
         {home / ".npm/_cacache", home / ".gradle/caches/8.7", home / ".gradle/caches/8.8",
          derived / "App-abc", derived / "Shop-def", derived / "Odd\nname"}) {
      fill(folder);
    }
    fs::create_directory_symlink(home, home / ".npm/_cacache/around");
    before = inPlace();
  }

  // A few megabytes at its top, and folders of small files.
  static void fill(const fs::path& folder) {
    fs::create_directories(folder);
    const int large = ::open((folder / "large").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    EXPECT_EQ(::posix_fallocate(large, 0, 2'000'000), 0);
    ::close(large);
    for (int i = 0; i < kFolders; ++i) {
      const fs::path part = folder / fmt::format("part {}", i);
      fs::create_directory(part);
      for (int j = 0; j < kFilesEach; ++j) std::ofstream(part / fmt::format("{}", j));
    }
  }

  // Everything that the cleanup may move.
  Manifest inPlace() {
    Manifest all = manifestOf(home / ".npm/_cacache");
    for (const char* folder : {".gradle/caches", "Library/Developer/Xcode/DerivedData"}) {
      for (const auto& entry : fs::directory_iterator(home / folder)) {
        for (auto& [name, what] : manifestOf(entry.path())) {
          all.emplace(entry.path().string() + name, what);
        }
      }
    }
    return all;
  }

  CleanupPorts ports() {
    return {.folders = folders, .files = files, .commands = programs, .trash = trash};
  }

  // The main loop; time passes as fast as the threads let it.
  void turn() {
    up += 0.3;
    scheduler->turn();
    std::this_thread::yield();
  }
  void turnUntilQuiet(const Cleanup& cleanup) {
    while (*cleanup.scanning() || !cleanup.clearing()->empty()) turn();
  }
  static std::vector<CleanupItem> itemsOf(const Cleanup& cleanup) {
    std::vector<CleanupItem> all;
    for (const CleanupSpot& spot : *cleanup.spots()) {
      all.insert(all.end(), spot.items.begin(), spot.items.end());
    }
    return all;
  }

  // By hand: the object itself knows of the last clearing alone.
  void putAllBack(const std::vector<CleanupItem>& items) {
    const std::string there = (home / ".local/share/Trash/files").string();
    for (const FolderEntry& entry : folders.list(there)) {
      const std::string trashed = there + "/" + entry.name;
      const auto facts = folders.facts(trashed);
      ASSERT_TRUE(facts);
      const auto item = std::find_if(items.begin(), items.end(), [&](const CleanupItem& each) {
        return each.identity == facts->identity;
      });
      ASSERT_NE(item, items.end()) << trashed;
      EXPECT_TRUE(trash.putBack(trashed, *item->url, facts->identity)) << trashed;
    }
    EXPECT_TRUE(folders.list(there).empty());
    EXPECT_TRUE(folders.list((home / ".local/share/Trash/info").string()).empty());
  }

  ScratchFolder scratch;
  const fs::path home = fs::canonical(scratch.path()) / "ada";
  LinuxFolderSource folders{baseFolders(home.string(), nullptr, nullptr)};
  LocalFiles files;
  NoPrograms programs;
  DesktopTrash trash{{.dataFolder = (home / ".local/share").string(),
                      .uid = ::getuid(),
                      .wallTime = [] { return 1'780'000'000.0; }}};
  Manifest before;
  double up = 1000;
  std::unique_ptr<LiveScheduler> scheduler =
      std::make_unique<LiveScheduler>(Clockwork{.wallTime = [this] { return 1'780'000'000 + up; },
                                                .uptime = [this] { return up; },
                                                .wakeAt = [](std::optional<double>) {},
                                                .wakeNow = [] {},
                                                .beginThread = [](WorkPriority) {}});
};

TEST_F(CleanupThreadsTest, ScansClearingsAndReturnsSideBySideLoseNothing) {
  std::vector<CleanupItem> everything;
  {
    Cleanup cleanup(ports(), home.string(), *scheduler);
    std::uint64_t seen = 0;
    const Subscription progress =
        cleanup.progress().subscribe([&](const std::optional<ScanProgress>& now) {
          seen = std::max(seen, now ? now->files : 0);
        });
    cleanup.scan();
    turnUntilQuiet(cleanup);
    everything = itemsOf(cleanup);
    ASSERT_EQ(everything.size(), 6u);
    EXPECT_GT(seen, 0u);
    for (int round = 0; round < kRounds; ++round) {
      cleanup.scan();
      for (int i = 0; i < round * 5; ++i) turn();
      const std::vector<CleanupItem> all = itemsOf(cleanup);
      const auto half = all.begin() + static_cast<std::ptrdiff_t>(all.size() / 2);
      cleanup.clear({all.begin(), half});
      if (round % 3 == 0) cleanup.abandonScan();
      cleanup.scan();
      cleanup.clear({half, all.end()});
      if (round % 4 != 0) turnUntilQuiet(cleanup);
      cleanup.putBack();
      if (round % 5 == 0) cleanup.abandonScan();
    }
    turnUntilQuiet(cleanup);
    putAllBack(everything);
    cleanup.scan();
    turnUntilQuiet(cleanup);
    EXPECT_EQ(itemsOf(cleanup).size(), everything.size());
    cleanup.scan();
    cleanup.clear(everything);
    turn();
  }  // while a scan runs and things are cleared
  scheduler.reset();
  putAllBack(everything);
  EXPECT_EQ(inPlace(), before);
}

}  // namespace
}  // namespace embrix
