#include "cleanup/cleanup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "fakes/folder_world.h"
#include "fakes/manual_scheduler.h"
#include "fakes/scripted_host.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

constexpr std::int64_t kMegabyte = 1'000'000;
const std::string kHome = "/Users/me";
const std::string kNpm = kHome + "/.npm/_cacache";
const std::string kPip = kHome + "/Library/Caches/pip";
const std::string kYarn = kHome + "/Library/Caches/Yarn";
const std::string kUdid = "D03F9286-CB36-433E-ADE0-A67768864F77";
const std::string kDelete = "/usr/bin/xcrun simctl delete " + kUdid;

class CleanupTest : public testing::Test {
 protected:
  CleanupTest() {
    world.file(kNpm + "/x", 3 * kMegabyte);
    world.file(kPip + "/x", 2 * kMegabyte);
    world.file(kYarn + "/x", kMegabyte);
    cleanup = std::make_unique<Cleanup>(
        CleanupPorts{.folders = world, .files = world, .commands = *host.commands, .trash = world},
        kHome, scheduler);
  }

  void scan() {
    cleanup->scan();
    scheduler.runBackground();
  }
  CleanupItem item(const std::string& id) {
    for (const CleanupSpot& spot : *cleanup->spots()) {
      for (const CleanupItem& each : spot.items) {
        if (each.id == id) return each;
      }
    }
    throw std::logic_error("no item " + id);
  }
  std::vector<std::string> ids() {
    std::vector<std::string> ids;
    for (const CleanupSpot& spot : *cleanup->spots()) {
      for (const CleanupItem& each : spot.items) ids.push_back(each.id);
    }
    return ids;
  }
  void clear(const std::vector<CleanupItem>& items) {
    cleanup->clear(items);
    scheduler.runBackground();
  }
  static CleanupItem simulator() {
    return CleanupItem{.id = kUdid, .bytes = 5 * kMegabyte, .simulatorUDID = kUdid};
  }

  FolderWorld world;
  ScriptedHost machine;
  Host host = machine.host();
  ManualScheduler scheduler;
  std::unique_ptr<Cleanup> cleanup;
};

// Scanning

TEST_F(CleanupTest, NothingIsKnownBeforeTheFirstScan) {
  EXPECT_THAT(*cleanup->spots(), IsEmpty());
  EXPECT_EQ(*cleanup->scannedAt(), std::nullopt);
  EXPECT_FALSE(*cleanup->scanning());
  EXPECT_THAT(cleanup->found(), IsEmpty());
  EXPECT_EQ(cleanup->totalBytes(), 0);
}

TEST_F(CleanupTest, AScanRunsInTheBackgroundAndOneAtATime) {
  cleanup->scan();
  EXPECT_TRUE(*cleanup->scanning());
  EXPECT_THAT(*cleanup->spots(), IsEmpty());
  cleanup->scan();
  EXPECT_THAT(scheduler.priorities, ElementsAre(WorkPriority::utility));
  scheduler.advance(3);
  scheduler.runBackground();
  EXPECT_FALSE(*cleanup->scanning());
  EXPECT_EQ(*cleanup->scannedAt(), scheduler.wall);
  EXPECT_THAT(*cleanup->spots(), SizeIs(13));
  EXPECT_THAT(ids(), ElementsAre(kNpm, kYarn, kPip));
}

TEST_F(CleanupTest, AScanIsGoodForTenMinutes) {
  scan();
  scheduler.advance(600);
  cleanup->scanIfStale();
  EXPECT_FALSE(*cleanup->scanning());
  scheduler.advance(0.1);
  cleanup->scanIfStale();
  EXPECT_TRUE(*cleanup->scanning());
}

TEST_F(CleanupTest, WithoutAScanItIsStale) {
  cleanup->scanIfStale();
  EXPECT_TRUE(*cleanup->scanning());
}

TEST_F(CleanupTest, AScanTellsHowFarItIs) {
  std::vector<std::optional<ScanProgress>> told;
  const auto subscription = cleanup->progress().subscribe(
      [&](const std::optional<ScanProgress>& progress) { told.push_back(progress); });
  // While yarn's cache is measured, time passes and the surface looks.
  world.onMeasure = [this](const std::string& folder) {
    if (folder == kYarn) scheduler.advance(Cleanup::kProgressInterval);
  };
  scan();
  ASSERT_THAT(told, SizeIs(3));
  EXPECT_EQ(told[0], ScanProgress{});
  EXPECT_EQ(told[1], (ScanProgress{.spotsDone = 7, .files = 1, .bytes = 3 * kMegabyte}));
  EXPECT_EQ(told[2], std::nullopt);
  EXPECT_EQ(scheduler.timersWaiting(), 1u);
  scheduler.advance(10);
  EXPECT_THAT(told, SizeIs(3)) << "nobody looks at a scan that has ended";
}

TEST_F(CleanupTest, AnAbandonedScanEndsAtOnceAndChangesNothing) {
  scan();
  const auto before = *cleanup->spots();
  const auto scannedAt = *cleanup->scannedAt();
  world.remove(kNpm);
  scheduler.advance(1000);
  cleanup->scan();
  cleanup->abandonScan();
  EXPECT_FALSE(*cleanup->scanning());
  EXPECT_EQ(*cleanup->progress(), std::nullopt);
  world.log.clear();
  scheduler.runBackground();
  EXPECT_THAT(world.log, IsEmpty()) << "the work finds that nobody wants it";
  EXPECT_EQ(*cleanup->spots(), before);
  EXPECT_EQ(*cleanup->scannedAt(), scannedAt);
  scan();
  EXPECT_THAT(ids(), ElementsAre(kYarn, kPip));
}

TEST_F(CleanupTest, AbandoningWithoutAScanDoesNothing) {
  cleanup->abandonScan();
  EXPECT_FALSE(*cleanup->scanning());
}

TEST_F(CleanupTest, TheEndOfTheObjectAbandonsItsScan) {
  cleanup->scan();
  cleanup.reset();
  scheduler.runBackground();
  scheduler.advance(10);
  EXPECT_THAT(world.log, IsEmpty());
}

TEST_F(CleanupTest, WhatIsClearedWhileAScanRunsDoesNotComeBackWithIt) {
  scan();
  world.onMeasure = [this](const std::string& folder) {
    if (folder != kYarn) return;
    world.onMeasure = nullptr;
    cleanup->clear({item(kNpm)});
  };
  cleanup->scan();
  // The clearing ends first, then the scan that had seen npm's cache before.
  ASSERT_TRUE(scheduler.doWork());
  ASSERT_TRUE(scheduler.doWork());
  scheduler.runBackground();
  EXPECT_THAT(ids(), ElementsAre(kYarn, kPip));
}

// Totals

TEST_F(CleanupTest, TotalsLeaveOutWhatIsOnlyForReview) {
  cleanup->loadFixture([] {
    const CleanupItem old{.id = "a", .bytes = 5, .lastUsed = 0};
    const CleanupItem kept{.id = "b", .bytes = 7};
    return std::vector<CleanupSpot>{
        {.id = "one", .items = {old, kept}},
        {.id = "empty"},
        {.id = "zero", .items = {CleanupItem{.id = "z", .bytes = 0}}},
        {.id = "devices",
         .kind = CleanupSpot::Kind::unavailableSimulators,
         .items = {CleanupItem{.id = "c", .bytes = 11, .obsolete = "gone"}}},
        {.id = "archives",
         .kind = CleanupSpot::Kind::review,
         .items = {CleanupItem{.id = "d", .bytes = 13, .lastUsed = 0}}}};
  });
  std::vector<std::string> found;
  for (const CleanupSpot& spot : cleanup->found()) found.push_back(spot.id);
  EXPECT_THAT(found, ElementsAre("one", "devices", "archives"));
  EXPECT_EQ(cleanup->totalBytes(), 5 + 7 + 11);
  EXPECT_EQ(cleanup->unusedBytes(), 5 + 11);
  std::vector<std::string> unused;
  for (const CleanupItem& each : cleanup->unusedItems()) unused.push_back(each.id);
  EXPECT_THAT(unused, ElementsAre("a", "c"));
}

// Clearing

TEST_F(CleanupTest, ClearedItemsGoToTheTrashAndLeaveTheirSpotsAtOnce) {
  scan();
  const FileIdentity identity = *item(kNpm).identity;
  cleanup->clear({item(kNpm), item(kPip)});
  EXPECT_THAT(*cleanup->clearing(), ElementsAre(kNpm, kPip));
  EXPECT_THAT(ids(), SizeIs(3)) << "until the work is done";
  EXPECT_EQ(scheduler.priorities.back(), WorkPriority::userInitiated);
  scheduler.runBackground();

  EXPECT_THAT(*cleanup->clearing(), IsEmpty());
  EXPECT_THAT(ids(), ElementsAre(kYarn));
  EXPECT_FALSE(world.has(kNpm));
  EXPECT_TRUE(world.has("/Trash/1 _cacache/x"));
  ASSERT_TRUE(*cleanup->lastCleared());
  const Cleanup::Cleared& cleared = **cleanup->lastCleared();
  EXPECT_EQ(cleared.bytes, 5 * kMegabyte);
  EXPECT_EQ(cleared.deleted, 0);
  ASSERT_THAT(cleared.moves, SizeIs(2));
  EXPECT_EQ(cleared.moves[0],
            (Cleanup::Cleared::Move{
                .original = kNpm, .trashed = "/Trash/1 _cacache", .identity = identity}));
  EXPECT_EQ(*cleanup->problem(), std::nullopt);
  EXPECT_FALSE(*cleanup->scanning()) << "without a new scan";
}

TEST_F(CleanupTest, WithOnlyItemsInUseNothingHappensAndTheProblemStays) {
  scan();
  world.unmovable = {kNpm};
  clear({item(kNpm)});
  const auto problem = *cleanup->problem();
  ASSERT_TRUE(problem);
  const auto cleared = *cleanup->lastCleared();
  CleanupItem busy = item(kPip);
  busy.inUse = "pip is running";
  clear({busy});
  clear({});
  EXPECT_EQ(*cleanup->problem(), problem);
  EXPECT_EQ(*cleanup->lastCleared(), cleared);
  EXPECT_TRUE(world.has(kPip));
}

TEST_F(CleanupTest, AnItemInUseIsLeftOutOfTheOthers) {
  scan();
  CleanupItem busy = item(kPip);
  busy.inUse = "pip is running";
  clear({busy, item(kNpm)});
  EXPECT_THAT(ids(), ElementsAre(kYarn, kPip));
  EXPECT_TRUE(world.has(kPip));
}

TEST_F(CleanupTest, OneFailureIsToldAndTheItemStays) {
  scan();
  world.unmovable = {kNpm};
  clear({item(kNpm), item(kPip)});
  EXPECT_EQ(*cleanup->problem(),
            "Couldn't clear 1 item. Something may be using it: quit the tool and try again.");
  EXPECT_THAT(ids(), ElementsAre(kNpm, kYarn));
  EXPECT_EQ((*cleanup->lastCleared())->bytes, 2 * kMegabyte);
  EXPECT_THAT(*cleanup->clearing(), IsEmpty());
}

TEST_F(CleanupTest, TwoFailuresAreToldTogether) {
  scan();
  world.unmovable = {kNpm, kPip};
  clear({item(kNpm), item(kPip)});
  EXPECT_EQ(*cleanup->problem(),
            "Couldn't clear 2 items. Something may be using them: quit the tool and try again.");
  EXPECT_EQ(*cleanup->lastCleared(), Cleanup::Cleared{}) << "also when nothing was cleared";
}

TEST_F(CleanupTest, TheNextClearingForgetsTheProblemAndTheLastOutcome) {
  scan();
  world.unmovable = {kNpm};
  clear({item(kNpm)});
  clear({item(kPip)});
  EXPECT_EQ(*cleanup->problem(), std::nullopt);
  EXPECT_THAT((*cleanup->lastCleared())->moves, SizeIs(1));
  EXPECT_EQ((*cleanup->lastCleared())->moves[0].original, kPip);
}

TEST_F(CleanupTest, AnItemThatVanishedCountsAsClearedWithItsBytesAndWithoutAMove) {
  scan();
  const CleanupItem npm = item(kNpm);
  world.remove(kNpm);
  clear({npm});
  EXPECT_EQ((*cleanup->lastCleared())->bytes, 3 * kMegabyte);
  EXPECT_THAT((*cleanup->lastCleared())->moves, IsEmpty());
  EXPECT_THAT(ids(), ElementsAre(kYarn, kPip));
  EXPECT_EQ(*cleanup->problem(), std::nullopt);
}

TEST_F(CleanupTest, AnItemWhoseOuterFolderVanishedCountsAsClearedToo) {
  const std::string support = kHome + "/Library/Developer/Xcode/iOS DeviceSupport";
  world.file(support + "/iPhone1,1 1.0/x", kMegabyte);
  scan();
  const CleanupItem old = item(support + "/iPhone1,1 1.0");
  world.remove(support);
  clear({old});
  EXPECT_EQ((*cleanup->lastCleared())->bytes, kMegabyte);
  EXPECT_EQ(*cleanup->problem(), std::nullopt);
}

TEST_F(CleanupTest, AMoveIsNotedOnlyWhenTheSystemSaysWhereItWent) {
  scan();
  world.trashSaysWhere = false;
  clear({item(kNpm)});
  EXPECT_THAT((*cleanup->lastCleared())->moves, IsEmpty());
  EXPECT_THAT(ids(), ElementsAre(kYarn, kPip));
}

TEST_F(CleanupTest, ClearingTwiceInARowPerformsOnce) {
  scan();
  const CleanupItem npm = item(kNpm);
  cleanup->clear({npm, npm});
  cleanup->clear({npm});
  scheduler.runBackground();
  EXPECT_THAT(world.log, testing::Contains("trash " + kNpm).Times(1));
  EXPECT_EQ((*cleanup->lastCleared())->bytes, 3 * kMegabyte);
}

TEST_F(CleanupTest, TwoClearingsAtATimeBothEnd) {
  scan();
  cleanup->clear({item(kNpm)});
  cleanup->clear({item(kNpm), item(kPip)});
  EXPECT_THAT(*cleanup->clearing(), ElementsAre(kNpm, kPip));
  scheduler.runBackground();
  EXPECT_THAT(ids(), ElementsAre(kYarn));
  EXPECT_THAT(*cleanup->clearing(), IsEmpty());
  EXPECT_EQ((*cleanup->lastCleared())->moves[0].original, kPip) << "only the last can be undone";
}

TEST_F(CleanupTest, AnItemWithoutAPathCountsForNothing) {
  scan();
  clear({CleanupItem{.id = "Archives", .bytes = 9 * kMegabyte}});
  EXPECT_EQ(*cleanup->lastCleared(), Cleanup::Cleared{});
  EXPECT_EQ(*cleanup->problem(), std::nullopt);
}

TEST_F(CleanupTest, ASimulatorIsDeletedByItsTool) {
  machine.commandOutputs[kDelete] = "";
  clear({simulator()});
  EXPECT_EQ(*cleanup->lastCleared(),
            (Cleanup::Cleared{.bytes = 5 * kMegabyte, .moves = {}, .deleted = 1}));
  EXPECT_THAT(machine.log, ElementsAre("commands.output " + kDelete));
}

TEST_F(CleanupTest, ASimulatorThatCannotBeDeletedIsAFailure) {
  clear({simulator()});
  EXPECT_EQ(*cleanup->lastCleared(), Cleanup::Cleared{});
  EXPECT_THAT(*cleanup->problem(),
              testing::Optional(testing::StartsWith("Couldn't clear 1 item.")));
}

TEST_F(CleanupTest, AWordForManySimulatorsIsNeverPassedToTheTool) {
  for (const std::string& udid : {std::string("all"), std::string("unavailable"),
                                  std::string("--help"), kUdid + " all", std::string()}) {
    clear({CleanupItem{.id = udid, .simulatorUDID = udid}});
    EXPECT_NE(*cleanup->problem(), std::nullopt) << udid;
  }
  EXPECT_THAT(machine.log, IsEmpty());
}

// What must never be moved

TEST_F(CleanupTest, AFolderReplacedSinceTheScanStays) {
  scan();
  const CleanupItem npm = item(kNpm);
  world.replaceByFolder(kNpm);
  world.file(kNpm + "/precious", kMegabyte);
  clear({npm});
  EXPECT_TRUE(world.has(kNpm + "/precious"));
  EXPECT_THAT(*cleanup->problem(),
              testing::Optional(testing::StartsWith("Couldn't clear 1 item.")));
}

TEST_F(CleanupTest, ALinkPutInTheFoldersPlaceStaysAndSoDoesWhatItNames) {
  world.file(kHome + "/Documents/thesis", kMegabyte);
  scan();
  const CleanupItem npm = item(kNpm);
  world.remove(kNpm);
  world.link(kNpm, kHome + "/Documents");
  clear({npm});
  EXPECT_TRUE(world.has(kHome + "/Documents/thesis"));
  EXPECT_TRUE(world.has(kNpm));
  EXPECT_NE(*cleanup->problem(), std::nullopt);
}

TEST_F(CleanupTest, NothingOutsideTheCatalogueIsEverMoved) {
  world.file(kHome + "/Documents/thesis", kMegabyte);
  world.file(kNpm + "/part/x", kMegabyte);
  world.file(kHome + "/Library/Developer/Xcode/Archives/a/x", kMegabyte);
  world.file("/Users/melanie/.npm/_cacache/x", kMegabyte);
  world.file(kHome + "/Library/Developer/Xcode/DerivedData/App/Build/x", kMegabyte);
  world.file(kHome + "/Library/Developer/Xcode/iOS DeviceSupport/X 1.0/x", kMegabyte);
  for (const std::string& path :
       {kHome + "/Documents", kHome, std::string("/"), kHome + "/.npm", kNpm + "/part",
        kHome + "/Library/Developer/Xcode/Archives", kHome + "/Library/Developer/Xcode/Archives/a",
        std::string("/Users/melanie/.npm/_cacache"), kHome + "/Library/Developer/Xcode/DerivedData",
        kHome + "/Library/Developer/Xcode/DerivedData/App/Build",
        kHome + "/Library/Developer/Xcode/iOS DeviceSupport", std::string("relative"),
        std::string()}) {
    CleanupItem wrong{.id = "x", .url = path};
    if (const auto facts = world.facts(path)) wrong.identity = facts->identity;
    clear({wrong});
    EXPECT_NE(*cleanup->problem(), std::nullopt) << path;
  }
  EXPECT_THAT(world.log, Not(testing::Contains(testing::StartsWith("trash"))));
}

TEST_F(CleanupTest, EverythingInTheCatalogueMayBeMoved) {
  for (const std::string& path :
       {kNpm, kHome + "/Library/Developer/Xcode/DerivedData/App",
        kHome + "/Library/Developer/Xcode/iOS DeviceSupport/iPhone1,1 1.0",
        kHome + "/Library/Developer/Xcode/tvOS DeviceSupport/AppleTV1,1 1.0",
        kHome + "/Library/Developer/CoreSimulator/Caches", kHome + "/.gradle/caches/8.7"}) {
    world.file(path + "/x", kMegabyte);
    clear({CleanupItem{.id = "x", .url = path, .identity = world.facts(path)->identity}});
    EXPECT_FALSE(world.has(path)) << path;
  }
}

TEST_F(CleanupTest, AnItemThatNobodyMeasuredStays) {
  clear({CleanupItem{.id = kNpm, .url = kNpm}});
  EXPECT_TRUE(world.has(kNpm));
  EXPECT_NE(*cleanup->problem(), std::nullopt);
}

TEST_F(CleanupTest, ALinkedSpotBelowTheHomeIsClearedAsTheLinkSays) {
  world.remove(kNpm);
  world.file(kHome + "/big/npm/x", 4 * kMegabyte);
  world.link(kNpm, kHome + "/big/npm");
  scan();
  clear({item(kNpm)});
  EXPECT_FALSE(world.has(kHome + "/big/npm"));
  EXPECT_TRUE(world.has(kNpm)) << "the link itself stays";
  cleanup->putBack();
  EXPECT_TRUE(world.has(kHome + "/big/npm/x"));
}

// Putting back

TEST_F(CleanupTest, PuttingBackRestoresAndScansAnew) {
  scan();
  const auto before = world.nodes;
  clear({item(kNpm), item(kPip)});
  EXPECT_NE(world.nodes, before);
  cleanup->putBack();
  EXPECT_EQ(*cleanup->lastCleared(), std::nullopt);
  EXPECT_EQ(*cleanup->scannedAt(), std::nullopt);
  EXPECT_TRUE(*cleanup->scanning());
  world.nodes.erase("/Trash");
  EXPECT_EQ(world.nodes, before);
  scheduler.runBackground();
  EXPECT_THAT(ids(), ElementsAre(kNpm, kYarn, kPip));
  EXPECT_EQ(*cleanup->problem(), std::nullopt);
}

TEST_F(CleanupTest, WithoutAClearingThereIsNothingToPutBack) {
  scan();
  cleanup->putBack();
  EXPECT_FALSE(*cleanup->scanning());
  EXPECT_NE(*cleanup->scannedAt(), std::nullopt);
}

TEST_F(CleanupTest, PuttingBackAClearingWithoutMovesForgetsItAndScansAnew) {
  machine.commandOutputs[kDelete] = "";
  clear({simulator()});
  cleanup->putBack();
  EXPECT_EQ(*cleanup->lastCleared(), std::nullopt);
  EXPECT_TRUE(*cleanup->scanning());
}

TEST_F(CleanupTest, ASimulatorStaysDeletedWhenTheRestIsPutBack) {
  scan();
  machine.commandOutputs[kDelete] = "";
  clear({simulator(), item(kNpm)});
  EXPECT_EQ((*cleanup->lastCleared())->deleted, 1);
  EXPECT_THAT((*cleanup->lastCleared())->moves, SizeIs(1));
  machine.log.clear();
  cleanup->putBack();
  EXPECT_TRUE(world.has(kNpm));
  EXPECT_EQ(*cleanup->problem(), std::nullopt);
  EXPECT_THAT(machine.log, IsEmpty());
}

TEST_F(CleanupTest, OneThatCannotBePutBackIsTold) {
  scan();
  clear({item(kNpm), item(kPip)});
  world.file(kNpm + "/new", kMegabyte);
  cleanup->putBack();
  EXPECT_EQ(*cleanup->problem(),
            "1 item was no longer in the Trash, or something new is in its place.");
  EXPECT_TRUE(world.has(kNpm + "/new"));
  EXPECT_TRUE(world.has("/Trash/1 _cacache/x")) << "it stays in the Trash";
  EXPECT_TRUE(world.has(kPip + "/x")) << "the others come back";
}

TEST_F(CleanupTest, ThreeThatCannotBePutBackAreToldTogether) {
  scan();
  clear({item(kNpm), item(kPip), item(kYarn)});
  world.remove("/Trash");
  cleanup->putBack();
  EXPECT_EQ(*cleanup->problem(),
            "3 items were no longer in the Trash, or something new is in its place.");
}

TEST_F(CleanupTest, AStrangerInTheTrashIsNotPutBack) {
  scan();
  clear({item(kNpm)});
  world.replaceByFolder("/Trash/1 _cacache");
  cleanup->putBack();
  EXPECT_FALSE(world.has(kNpm));
  EXPECT_NE(*cleanup->problem(), std::nullopt);
}

TEST_F(CleanupTest, PuttingBackWhileAScanRunsScansAnew) {
  scan();
  clear({item(kNpm)});
  cleanup->scan();
  ASSERT_TRUE(scheduler.doWork());  // it has found that npm's cache is gone
  cleanup->putBack();
  scheduler.runBackground();
  EXPECT_THAT(ids(), ElementsAre(kNpm, kYarn, kPip));
}

TEST_F(CleanupTest, ADismissedClearingCannotBePutBack) {
  scan();
  clear({item(kNpm)});
  cleanup->dismissCleared();
  EXPECT_EQ(*cleanup->lastCleared(), std::nullopt);
  cleanup->putBack();
  EXPECT_FALSE(world.has(kNpm));
  EXPECT_TRUE(world.has("/Trash/1 _cacache"));
}

// Demo data

class FixtureCleanupTest : public CleanupTest {
 protected:
  FixtureCleanupTest() {
    cleanup->loadFixture([this] {
      ++made;
      return std::vector<CleanupSpot>{
          {.id = "one",
           .items = {CleanupItem{.id = "a", .url = kNpm, .bytes = 5},
                     CleanupItem{.id = "b", .bytes = 7, .simulatorUDID = "FIXTURE-SIMULATOR"},
                     CleanupItem{.id = "c", .bytes = 9}}}};
    });
  }
  int made = 0;
};

TEST_F(FixtureCleanupTest, DemoDataStandsWithoutAScan) {
  EXPECT_TRUE(cleanup->isFixture());
  EXPECT_THAT(ids(), ElementsAre("a", "b", "c"));
  cleanup->scan();
  cleanup->scanIfStale();
  EXPECT_FALSE(*cleanup->scanning());
  EXPECT_EQ(scheduler.workWaiting(), 0u);
}

TEST_F(FixtureCleanupTest, ClearingDemoDataTouchesNoDisk) {
  cleanup->clear({item("a"), item("b")});
  EXPECT_EQ(scheduler.workWaiting(), 0u);
  EXPECT_THAT(ids(), ElementsAre("c"));
  EXPECT_EQ(*cleanup->lastCleared(), (Cleanup::Cleared{.bytes = 12, .moves = {}, .deleted = 1}));
  EXPECT_TRUE(world.has(kNpm));
  EXPECT_THAT(machine.log, IsEmpty());
}

TEST_F(FixtureCleanupTest, PuttingDemoDataBackMakesItAnew) {
  cleanup->clear({item("a")});
  cleanup->putBack();
  EXPECT_THAT(ids(), ElementsAre("a", "b", "c"));
  EXPECT_EQ(made, 2);
  EXPECT_EQ(*cleanup->lastCleared(), std::nullopt);
  EXPECT_FALSE(*cleanup->scanning());
}

TEST_F(CleanupTest, DemoDataEndsTheScanThatRuns) {
  cleanup->scan();
  cleanup->loadFixture([] { return std::vector<CleanupSpot>{{.id = "demo"}}; });
  scheduler.runBackground();
  EXPECT_THAT(*cleanup->spots(), SizeIs(1));
}

}  // namespace
}  // namespace embrix
