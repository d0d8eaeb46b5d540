#include "records/history_store.h"

#include <sys/stat.h>
#include <unistd.h>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/full_disk.h"
#include "fakes/scratch_folder.h"
#include "records/history.h"
#include "records/record_encoding.h"
#include "sample_records.h"

namespace embrix {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

const std::vector<std::string> kFiles = {"history.json", "today.json", "archive.json",
                                         "discharge.json", "baseline.json"};

bool saveTogether(const HistoryStore& store,
                  const std::optional<DischargeSession>& session = fullSession()) {
  return store.saveAll(HistorySnapshot(std::vector{fullPoint(), barePoint()}), fullLedger(),
                       Archive({fullDay(), bareDay()}), session, smallBaseline());
}

// One by one and then together, which must come to the same.
bool saveAll(const HistoryStore& store) {
  const std::vector<HistoryPoint> points = {fullPoint(), barePoint()};
  int saved = 0;
  saved += store.save(HistorySnapshot(points)) ? 1 : 0;
  saved += store.saveLedger(fullLedger()) ? 1 : 0;
  saved += store.saveArchive(Archive({fullDay(), bareDay()})) ? 1 : 0;
  saved += store.saveDischarge(fullSession()) ? 1 : 0;
  saved += store.saveBaseline(smallBaseline()) ? 1 : 0;
  EXPECT_TRUE(saved == 0 || saved == 5) << saved;
  EXPECT_EQ(saveTogether(store), saved == 5);
  return saved == 5;
}

void expectAll(const HistoryStore& store) {
  EXPECT_THAT(store.load(0), ElementsAre(fullPoint(), barePoint()));
  EXPECT_EQ(store.loadLedger(), fullLedger());
  EXPECT_EQ(store.loadArchive(), Archive({fullDay(), bareDay()}));
  EXPECT_EQ(store.loadDischarge(), fullSession());
  EXPECT_EQ(store.loadBaseline(), smallBaseline());
}

void expectNothing(const HistoryStore& store) {
  EXPECT_THAT(store.load(0), IsEmpty());
  EXPECT_EQ(store.loadLedger(), std::nullopt);
  EXPECT_EQ(store.loadArchive(), std::nullopt);
  EXPECT_EQ(store.loadDischarge(), std::nullopt);
  EXPECT_EQ(store.loadBaseline(), std::nullopt);
}

HistoryStore below(const ScratchFolder& folder) {
  return {folder / "support/Embrix"};
}

TEST(HistoryStoreTest, WhatIsSavedIsLoadedAgain) {
  const ScratchFolder folder;
  EXPECT_TRUE(saveAll(below(folder)));
  expectAll(below(folder));
}

TEST(HistoryStoreTest, WhatIsSavedTogetherIsLoadedAgain) {
  const ScratchFolder folder;
  EXPECT_TRUE(saveTogether(below(folder)));
  expectAll(below(folder));
}

TEST(HistoryStoreTest, WithoutASessionItsFileStaysAsItIs) {
  const ScratchFolder folder;
  EXPECT_TRUE(saveTogether(below(folder), std::nullopt));
  EXPECT_FALSE(folder.has("support/Embrix/discharge.json"));
  ASSERT_TRUE(saveTogether(below(folder)));
  EXPECT_TRUE(saveTogether(below(folder), std::nullopt));
  expectAll(below(folder));
}

TEST(HistoryStoreTest, EachRecordHasItsFileAndNothingElseStandsThere) {
  const ScratchFolder folder;
  ASSERT_TRUE(saveAll(below(folder)));
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder / "support/Embrix")) {
    names.push_back(entry.path().filename().string());
    EXPECT_EQ(entry.status().permissions(), fs::perms::owner_read | fs::perms::owner_write);
  }
  EXPECT_THAT(names, testing::UnorderedElementsAreArray(kFiles));
  EXPECT_EQ(folder.read("support/Embrix/today.json"), jsonOf(fullLedger()));
}

TEST(HistoryStoreTest, TheStandardFolderIsAmongWhatProgramsKeep) {
  EXPECT_EQ(HistoryStore::standard({.applicationSupportDirectory = "/home/ada/.local/share"}),
            HistoryStore{"/home/ada/.local/share/Embrix"});
  EXPECT_EQ(HistoryStore::standard({.homeDirectory = "/home/ada"}), HistoryStore{});
}

TEST(HistoryStoreTest, WithoutAFolderNothingIsKept) {
  EXPECT_FALSE(saveAll(HistoryStore{}));
  expectNothing(HistoryStore{});
  HistoryStore{}.removeLeftovers();
}

TEST(HistoryStoreTest, AnOldFolderWithoutFilesHoldsNothing) {
  const ScratchFolder folder;
  expectNothing(below(folder));
  expectNothing({folder.path()});
}

TEST(HistoryStoreTest, PointsMustBeNewerThanTheBound) {
  const ScratchFolder folder;
  std::vector<HistoryPoint> points;
  for (const double time : {100.0, 200.0, 300.0, 150.0}) {
    points.push_back(fullPoint());
    points.back().time = time;
  }
  ASSERT_TRUE(below(folder).save(HistorySnapshot(points)));
  EXPECT_THAT(below(folder).load(150), ElementsAre(points[1], points[2]));
  EXPECT_THAT(below(folder).load(149.9), ElementsAre(points[1], points[2], points[3]));
  EXPECT_THAT(below(folder).load(300), IsEmpty());
}

TEST(HistoryStoreTest, PointsOfAnOlderRunAreSkippedAndGoneWithTheNextSave) {
  const ScratchFolder folder;
  const double now = 1'750'000'000;
  std::vector<HistoryPoint> points;
  for (const double age : {7200.0, 1801.0, 1800.0, 1799.0, 2.0}) {
    points.push_back(fullPoint());
    points.back().time = now - age;
  }
  ASSERT_TRUE(below(folder).save(HistorySnapshot(points)));
  History history(1800);
  for (HistoryPoint& point : below(folder).load(now - 1800)) history.append(std::move(point));
  EXPECT_THAT(history.points(), ElementsAre(points[3], points[4]));
  ASSERT_TRUE(below(folder).save(history.snapshot()));
  EXPECT_THAT(below(folder).load(0), ElementsAre(points[3], points[4]));
}

TEST(HistoryStoreTest, ADamagedFileIsAbsentAndTheOthersAreNot) {
  for (const std::string& name : kFiles) {
    const ScratchFolder folder;
    ASSERT_TRUE(saveAll(below(folder)));
    fs::resize_file(folder / "support/Embrix/" + name, 20);
    EXPECT_EQ(below(folder).load(0).empty(), name == "history.json");
    EXPECT_EQ(below(folder).loadLedger().has_value(), name != "today.json");
    EXPECT_EQ(below(folder).loadArchive().has_value(), name != "archive.json");
    EXPECT_EQ(below(folder).loadDischarge().has_value(), name != "discharge.json");
    EXPECT_EQ(below(folder).loadBaseline().has_value(), name != "baseline.json");
    EXPECT_TRUE(saveAll(below(folder)));
    expectAll(below(folder));
  }
}

TEST(HistoryStoreTest, WhatCannotBeReadIsSetAsideAndNotWrittenOver) {
  const ScratchFolder folder;
  ASSERT_TRUE(saveAll(below(folder)));
  const std::string path = folder / "support/Embrix/archive.json";
  fs::resize_file(path, 20);
  const std::string damaged = folder.read("support/Embrix/archive.json");
  EXPECT_EQ(below(folder).loadArchive(), std::nullopt);
  EXPECT_FALSE(fs::exists(path));
  ASSERT_TRUE(saveAll(below(folder)));
  expectAll(below(folder));
  EXPECT_EQ(folder.read("support/Embrix/archive.json.damaged"), damaged);
}

TEST(HistoryStoreTest, WhatIsMissingIsNotSetAside) {
  const ScratchFolder folder;
  EXPECT_EQ(below(folder).loadArchive(), std::nullopt);
  EXPECT_FALSE(folder.has("support"));
}

TEST(HistoryStoreTest, AFullDiskLeavesTheOldFiles) {
  const ScratchFolder folder;
  ASSERT_TRUE(saveAll(below(folder)));
  {
    const FullDisk disk(10);
    EXPECT_FALSE(saveAll(below(folder)));
  }
  expectAll(below(folder));
  EXPECT_THAT(fs::directory_iterator(folder / "support/Embrix"),
              testing::Truly([](fs::directory_iterator files) {
                return std::distance(begin(files), end(files)) == 5;
              }));
}

TEST(HistoryStoreTest, AFileInPlaceOfTheFolderFailsEverything) {
  const ScratchFolder folder;
  folder.write("support", "a file");
  EXPECT_FALSE(saveAll(below(folder)));
  expectNothing(below(folder));
  EXPECT_EQ(folder.read("support"), "a file");
  fs::remove(folder / "support");
  EXPECT_TRUE(saveAll(below(folder)));
  expectAll(below(folder));
}

TEST(HistoryStoreTest, AFolderInPlaceOfAFileFailsThatFileAlone) {
  const ScratchFolder folder;
  fs::create_directories(folder / "support/Embrix/today.json/occupied");
  EXPECT_FALSE(below(folder).saveLedger(fullLedger()));
  EXPECT_EQ(below(folder).loadLedger(), std::nullopt);
  EXPECT_TRUE(below(folder).saveDischarge(fullSession()));
  EXPECT_EQ(below(folder).loadDischarge(), fullSession());
  EXPECT_TRUE(folder.has("support/Embrix/today.json/occupied"));
}

TEST(HistoryStoreTest, WhicheverFileCannotBeReplacedAllOthersAre) {
  for (const std::string& blocked : kFiles) {
    const ScratchFolder folder;
    fs::create_directories(folder / ("support/Embrix/" + blocked + "/occupied"));
    EXPECT_FALSE(saveTogether(below(folder)));
    for (const std::string& name : kFiles) {
      EXPECT_EQ(fs::is_regular_file(folder / ("support/Embrix/" + name)), name != blocked)
          << name << " beside " << blocked;
    }
  }
}

// An ordinary user while it lives: the super-user may write everywhere.
class OrdinaryUser {
 public:
  OrdinaryUser() {
    if (before_ == 0 && ::seteuid(kNobody) != 0) ADD_FAILURE();
  }
  ~OrdinaryUser() {
    if (::seteuid(before_) != 0) ADD_FAILURE();
  }

 private:
  static constexpr uid_t kNobody = 65534;
  uid_t before_ = ::geteuid();
};

TEST(HistoryStoreTest, AFolderThatCannotBeWrittenKeepsTheOldFiles) {
  const ScratchFolder folder;
  ASSERT_TRUE(saveAll(below(folder)));
  const fs::perms readOnly = fs::perms(0555);
  for (const fs::path path : {folder / "support/Embrix", folder / "support", folder.path()}) {
    fs::permissions(path, readOnly);
  }
  {
    const OrdinaryUser user;
    EXPECT_FALSE(saveAll(below(folder)));
    EXPECT_FALSE(saveAll({folder / "support/other"}));
  }
  for (const fs::path path : {folder.path(), folder / "support", folder / "support/Embrix"}) {
    fs::permissions(path, fs::perms::owner_all);
  }
  expectAll(below(folder));
  EXPECT_FALSE(folder.has("support/other"));
}

TEST(HistoryStoreTest, AFileOfAbsurdSizeIsNotRead) {
  const ScratchFolder folder;
  ASSERT_TRUE(saveAll(below(folder)));
  fs::resize_file(folder / "support/Embrix/history.json", std::uintmax_t{1} << 40);  // a hole
  EXPECT_THAT(below(folder).load(0), IsEmpty());
}

TEST(HistoryStoreTest, WhatAKilledRunLeftBesideTheFilesIsClearedAway) {
  const ScratchFolder folder;
  ASSERT_TRUE(saveAll({folder.path()}));
  folder.write("history.json.new-abcdef", "[{");
  folder.write("baseline.json.new-Zz0123", "");
  folder.write("mine.txt", "");
  HistoryStore{folder.path()}.removeLeftovers();
  EXPECT_THAT(folder.names(), UnorderedElementsAre("history.json", "today.json", "archive.json",
                                                   "discharge.json", "baseline.json", "mine.txt"));
  expectAll({folder.path()});
}

}  // namespace
}  // namespace embrix
