// What a save asks of the disk, in which order, and what it does when that has too little to give.

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/descriptor.h"
#include "base/whole_file.h"
#include "disk_calls.h"
#include "fakes/scratch_folder.h"
#include "hosts/linux/settings_store.h"
#include "records/history_store.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

bool saveAll(const HistoryStore& store) {
  return store.saveAll(HistorySnapshot(), DayLedger::fresh("2026-03-02"), Archive(),
                       DischargeSession::begun(1000, 80), PowerBaseline());
}

// So many descriptors more can be opened while this lives.
class FewDescriptors {
 public:
  explicit FewDescriptors(int count) {
    const Descriptor next(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    ::getrlimit(RLIMIT_NOFILE, &before_);
    const rlimit few{static_cast<rlim_t>(next.number() + count), before_.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &few);
  }
  ~FewDescriptors() { ::setrlimit(RLIMIT_NOFILE, &before_); }
  FewDescriptors(const FewDescriptors&) = delete;
  FewDescriptors& operator=(const FewDescriptors&) = delete;

 private:
  rlimit before_ = {};
};

TEST(SavingToDiskTest, EveryFileIsOnTheDiskBeforeItTakesItsPlaceAndTheFolderFollows) {
  const ScratchFolder folder;
  const DiskCalls disk;
  ASSERT_TRUE(saveAll({folder.path()}));
  EXPECT_THAT(disk.log(),
              ElementsAre("flush history.json", "flush today.json", "flush archive.json",
                          "flush discharge.json", "flush baseline.json", "rename history.json",
                          "rename today.json", "rename archive.json", "rename discharge.json",
                          "rename baseline.json", "flush folder"));
}

TEST(SavingToDiskTest, SoItIsOfASingleFile) {
  const ScratchFolder folder;
  const DiskCalls disk;
  ASSERT_TRUE(HistoryStore{folder.path()}.saveDischarge(DischargeSession::begun(1000, 80)));
  EXPECT_THAT(disk.log(),
              ElementsAre("flush discharge.json", "rename discharge.json", "flush folder"));
}

TEST(SavingToDiskTest, AFileThatFindsNoRoomTakesItFromNoOther) {
  const ScratchFolder folder;
  const std::vector<NewFile> files = {{folder / "long", {"too long for this disk"}},
                                      {folder / "short", {"fits"}},
                                      {folder / "other", {"fits too"}}};
  {
    DiskCalls disk;
    disk.leaveRoom(15);
    EXPECT_FALSE(writeFilesAtomically(folder.path(), files));
  }
  EXPECT_EQ(folder.read("short"), "fits");
  EXPECT_EQ(folder.read("other"), "fits too");
  EXPECT_THAT(folder.names(), testing::UnorderedElementsAre("short", "other"));
}

TEST(SavingToDiskTest, OneDescriptorIsEnoughForAll) {
  const ScratchFolder folder;
  const HistoryStore store{folder.path()};
  {
    const FewDescriptors one(1);
    EXPECT_TRUE(saveAll(store));
  }
  EXPECT_TRUE(store.loadLedger() && store.loadArchive() && store.loadDischarge() &&
              store.loadBaseline());
  EXPECT_TRUE(folder.has("history.json"));
}

TEST(SavingToDiskTest, SettingsOutlastAPowerCutAndTheStateOfTheMomentWaitsForNoDisk) {
  const ScratchFolder folder;
  FileSettingsStores stores(folder.path());
  const DiskCalls disk;
  stores.open("")->set("sampleInterval", 3.0);
  EXPECT_THAT(disk.log(),
              ElementsAre("flush settings.json", "rename settings.json", "flush folder"));
  stores.open("group.of.programs")->set("watts", 12.0);
  EXPECT_EQ(disk.log().size(), 4u);
  EXPECT_EQ(disk.log().back(), "rename group.of.programs.json");
  EXPECT_EQ(stores.open("group.of.programs")->stored("watts"), SettingValue(12.0));
}

}  // namespace
}  // namespace embrix
