#include "records/rename.h"

#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/scratch_folder.h"

namespace embrix {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

TEST(RenameTest, TheFormerFolderIsMovedWithAllThatIsInIt) {
  const ScratchFolder support;
  fs::create_directories(support / "Torvane/inner");
  support.write("Torvane/history.json", "[]");
  support.write("Torvane/inner/note", "kept");
  Rename::moveHistory(support.path());
  EXPECT_THAT(support.names(), ElementsAre("Embrix"));
  EXPECT_EQ(support.read("Embrix/history.json"), "[]");
  EXPECT_EQ(support.read("Embrix/inner/note"), "kept");
  Rename::moveHistory(support.path());  // a second run does nothing
  EXPECT_EQ(support.read("Embrix/history.json"), "[]");
}

TEST(RenameTest, WhereBothFoldersExistNothingMoves) {
  const ScratchFolder support;
  fs::create_directories(support / "Torvane");
  fs::create_directories(support / "Embrix");
  support.write("Torvane/history.json", "old");
  Rename::moveHistory(support.path());
  EXPECT_THAT(support.names(), UnorderedElementsAre("Torvane", "Embrix"));
  EXPECT_EQ(support.read("Torvane/history.json"), "old");
  EXPECT_FALSE(support.has("Embrix/history.json"));
}

TEST(RenameTest, AFileInPlaceOfTheNewFolderWinsToo) {
  const ScratchFolder support;
  fs::create_directories(support / "Torvane");
  support.write("Embrix", "a file");
  Rename::moveHistory(support.path());
  EXPECT_EQ(support.read("Embrix"), "a file");
  EXPECT_TRUE(support.has("Torvane"));
}

TEST(RenameTest, AFirstInstallHasNoFolderToMove) {
  const ScratchFolder support;
  Rename::moveHistory(support.path());
  Rename::moveHistory(support / "missing");
  Rename::moveHistory("");
  EXPECT_THAT(support.names(), IsEmpty());
}

// Settings by name, of any kind at all.
class Domains final : public SettingsStores {
 public:
  std::map<std::string, std::map<std::string, std::string>> domains;
  std::vector<std::string> copies;

  std::unique_ptr<SettingsStore> open(const std::string&) override { return nullptr; }
  bool hasSettings(const std::string& suite) override { return !domains[suite].empty(); }
  void copySettings(const std::string& from, const std::string& to) override {
    copies.push_back(from + " to " + to);
    domains[to] = domains[from];
  }
};

constexpr const char* kFormer = "com.torvane.app";
constexpr const char* kOwn = "";

TEST(RenameTest, TheFormerSettingsAreCopiedAndStay) {
  Domains stores;
  stores.domains[kFormer] = {{"sampleInterval", "5"}, {"last check", "a date"}};
  Rename::copySettings(stores, "app.embrix");
  EXPECT_EQ(stores.domains[kOwn], stores.domains[kFormer]);
  EXPECT_EQ(stores.domains[kFormer].size(), 2u);
  Rename::copySettings(stores, "app.embrix");
  EXPECT_EQ(stores.copies.size(), 1u);
}

TEST(RenameTest, OneSettingIsEnoughToCopyNothing) {
  Domains stores;
  stores.domains[kFormer] = {{"sampleInterval", "5"}};
  stores.domains[kOwn] = {{"appearance", "dark"}};
  Rename::copySettings(stores, "app.embrix");
  EXPECT_THAT(stores.copies, IsEmpty());
}

TEST(RenameTest, AFirstInstallHasNoSettingsToCopy) {
  Domains stores;
  Rename::copySettings(stores, "app.embrix");
  EXPECT_THAT(stores.copies, IsEmpty());
}

TEST(RenameTest, AProgramWithoutAnIdentifierOrWithTheFormerOneCopiesNothing) {
  Domains stores;
  stores.domains[kFormer] = {{"sampleInterval", "5"}};
  Rename::copySettings(stores, {});
  Rename::copySettings(stores, "com.torvane.app");
  EXPECT_THAT(stores.copies, IsEmpty());
}

}  // namespace
}  // namespace embrix
