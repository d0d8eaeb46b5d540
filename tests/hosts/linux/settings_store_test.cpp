#include "hosts/linux/settings_store.h"
#include "fakes/sanitized.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <cmath>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/full_disk.h"
#include "fakes/scratch_folder.h"

namespace embrix {
namespace {

using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

SettingValue text(const char* value) {
  return std::string(value);
}

class FileSettingsStoreTest : public testing::Test {
 protected:
  std::unique_ptr<SettingsStore> open(const std::string& suite = "") {
    return FileSettingsStores(folder_ / "embrix").open(suite);
  }
  void writeFile(std::string_view bytes) {
    fs::create_directory(folder_ / "embrix");
    folder_.write("embrix/settings.json", bytes);
  }
  std::string file() const { return folder_.read("embrix/settings.json"); }

  ScratchFolder folder_;
};

TEST_F(FileSettingsStoreTest, EveryTypeComesBackAfterARestart) {
  const std::pair<std::string, SettingValue> rows[] = {
      {"truth", true},
      {"falsehood", false},
      {"number", 2.5},
      {"whole number", 5.0},
      {"exact number", 0.1},
      {"large number", 1.7976931348623157e308},
      {"word", text("dark")},
      {"empty", text("")},
      {"characters", text("ü – \"\\/\n\x01")},
      {"list", Texts{"a", "", "ü"}},
      {"empty list", Texts{}},
      {"bytes", SettingData{std::string("\0\xff[]", 4)}},
      {"no bytes", SettingData{}},
  };
  {
    const auto store = open();
    for (const auto& [key, value] : rows) store->set(key, value);
  }
  const auto store = open();
  for (const auto& [key, value] : rows) EXPECT_EQ(store->stored(key), value) << key;
}

TEST_F(FileSettingsStoreTest, OpeningAndReadingWritesNothing) {
  EXPECT_EQ(open()->stored("watts"), std::nullopt);
  open()->removeAll();
  open()->remove("watts");
  EXPECT_THAT(folder_.names(), IsEmpty());
}

TEST_F(FileSettingsStoreTest, TheFileIsTheOwnersAlone) {
  open()->set("watts", 8.0);
  EXPECT_EQ(fs::status(folder_ / "embrix").permissions(), fs::perms::owner_all);
  EXPECT_EQ(fs::status(folder_ / "embrix/settings.json").permissions(),
            fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(FileSettingsStoreTest, RemovedKeysAreGoneAfterARestart) {
  {
    const auto store = open();
    store->set("a", 1.0);
    store->set("b", 2.0);
    store->remove("a");
    EXPECT_EQ(store->stored("a"), std::nullopt);
  }
  EXPECT_EQ(open()->stored("a"), std::nullopt);
  EXPECT_EQ(open()->stored("b"), SettingValue(2.0));
  open()->removeAll();
  EXPECT_EQ(open()->stored("b"), std::nullopt);
}

TEST_F(FileSettingsStoreTest, SuitesAreFilesOfTheirOwn) {
  open()->set("watts", 1.0);
  open("app.embrix.uitesting")->set("watts", 2.0);
  EXPECT_EQ(open()->stored("watts"), SettingValue(1.0));
  open("app.embrix.uitesting")->removeAll();
  EXPECT_EQ(open()->stored("watts"), SettingValue(1.0));
  EXPECT_TRUE(folder_.has("embrix/app.embrix.uitesting.json"));
}

TEST_F(FileSettingsStoreTest, ASuiteThatLeadsOutOfTheFolderIsRefused) {
  const std::string names[] = {"../other", "a/b",     "/etc/passwd",
                               "..",       ".hidden", std::string("a\0b", 3)};
  for (const std::string& name : names) EXPECT_EQ(open(name), nullptr) << name;
}

TEST_F(FileSettingsStoreTest, ADamagedFileIsEmptyAndKeptAside) {
  const std::string rows[] = {
      "",
      "{\"watts\": 8",
      "[1, 2]",
      "8",
      "null",
      "{\"watts\": 8} x",
      "{\"\xff\": 1}",
      "not JSON",
      std::string(200, '['),
      "{\"a\": " + std::string(300, '[') + std::string(300, ']') + "}",
  };
  for (const std::string& bytes : rows) {
    writeFile(bytes);
    const auto store = open();
    EXPECT_EQ(store->stored("watts"), std::nullopt) << bytes;
    EXPECT_EQ(folder_.read("embrix/settings.json.damaged"), bytes);
    EXPECT_FALSE(folder_.has("embrix/settings.json"));
    store->set("watts", 9.0);
    EXPECT_EQ(open()->stored("watts"), SettingValue(9.0)) << bytes;
    EXPECT_EQ(folder_.read("embrix/settings.json.damaged"), bytes);
  }
}

TEST_F(FileSettingsStoreTest, EveryTruncationOfAFileIsEmptyAndNoneIsACrash) {
  writeFile("");
  open()->set("word", text("ü\n"));
  open()->set("list", Texts{"a", "b"});
  open()->set("watts", 8.5);
  std::string whole = file();
  whole.pop_back();  // the line break at its end is no loss
  for (std::size_t length = 0; length < whole.size(); ++length) {
    writeFile(whole.substr(0, length));
    EXPECT_EQ(open()->stored("watts"), std::nullopt) << length;
  }
}

TEST_F(FileSettingsStoreTest, ValuesOfOtherTypesReadAsNothingAndSurviveARewrite) {
  writeFile(
      R"({"null": null, "object": {"a": [1, {"b": null}]}, "mixed": ["a", 1],
          "whole": 9007199254740993, "no bytes": {"data": "?"}, "watts": 8})");
  const auto store = open();
  EXPECT_EQ(store->stored("null"), std::nullopt);
  EXPECT_EQ(store->stored("object"), std::nullopt);
  EXPECT_EQ(store->stored("mixed"), std::nullopt);
  EXPECT_EQ(store->stored("no bytes"), std::nullopt);
  EXPECT_EQ(store->stored("watts"), SettingValue(8.0));
  store->set("watts", 9.0);
  EXPECT_EQ(parseJson(file()), parseJson(R"({"null": null, "object": {"a": [1, {"b": null}]},
      "mixed": ["a", 1], "whole": 9007199254740993, "no bytes": {"data": "?"}, "watts": 9.0})"));
}

TEST_F(FileSettingsStoreTest, ANumberThatJSONCannotHoldStandsForThisRunOnly) {
  const auto store = open();
  store->set("a", 1.0);
  store->set("b", std::numeric_limits<double>::infinity());
  EXPECT_EQ(store->stored("b"), SettingValue(std::numeric_limits<double>::infinity()));
  EXPECT_EQ(open()->stored("a"), SettingValue(1.0));
  EXPECT_EQ(open()->stored("b"), std::nullopt);
}

TEST_F(FileSettingsStoreTest, TextThatIsNotUTF8IsRepairedAndSuchAKeySetsNothing) {
  const auto store = open();
  store->set("word", text("a\xff"));
  store->set("\xff", 1.0);
  EXPECT_EQ(store->stored("\xff"), std::nullopt);
  EXPECT_EQ(open()->stored("word"), text("a\xEF\xBF\xBD"));
}

TEST_F(FileSettingsStoreTest, AFullDiskKeepsTheOldFileAndTheValueForThisRun) {
  const auto store = open();
  store->set("watts", 8.0);
  const std::string before = file();
  {
    const FullDisk disk(4);
    store->set("watts", 9.0);
  }
  EXPECT_EQ(store->stored("watts"), SettingValue(9.0));
  EXPECT_EQ(file(), before);
  EXPECT_EQ(open()->stored("watts"), SettingValue(8.0));
  // The next change that can be written brings the lost one with it.
  store->set("other", true);
  EXPECT_EQ(open()->stored("watts"), SettingValue(9.0));
}

TEST_F(FileSettingsStoreTest, AFolderThatTakesNoFilesIsNoFailure) {
  // Not even the superuser can make a file in a folder of the kernel's own.
  const auto store = FileSettingsStores("/proc/self/embrix").open("");
  store->set("watts", 8.0);
  EXPECT_EQ(store->stored("watts"), SettingValue(8.0));
}

TEST_F(FileSettingsStoreTest, AFolderWithoutPermissionIsNoFailure) {
  open()->set("watts", 8.0);
  fs::permissions(folder_ / "embrix", fs::perms::owner_read | fs::perms::owner_exec);
  const auto store = open();
  store->set("watts", 9.0);
  EXPECT_EQ(store->stored("watts"), SettingValue(9.0));
  fs::permissions(folder_ / "embrix", fs::perms::owner_all);
}

TEST_F(FileSettingsStoreTest, AFileInTheFoldersPlaceIsNoFailureAndStaysAsItIs) {
  folder_.write("embrix", "a file");
  const auto store = open();
  store->set("watts", 8.0);
  EXPECT_EQ(store->stored("watts"), SettingValue(8.0));
  EXPECT_EQ(folder_.read("embrix"), "a file");
}

#ifndef EMBRIX_SANITIZED
TEST_F(FileSettingsStoreTest, AFileThatCannotBeReadNowStaysAsItIs) {
  writeFile("{\"number\":1}\n");
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  const rlimit none{.rlim_cur = 0, .rlim_max = before.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
  const auto store = open();
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
  EXPECT_EQ(store->stored("number"), std::nullopt);
  store->set("number", 2.0);
  EXPECT_EQ(store->stored("number"), SettingValue(2.0));
  EXPECT_EQ(file(), "{\"number\":1}\n");
  EXPECT_FALSE(folder_.has("embrix/settings.json.damaged"));
  EXPECT_EQ(open()->stored("number"), SettingValue(1.0));
}
#endif

TEST_F(FileSettingsStoreTest, AFolderOrAPipeInTheFilesPlaceIsSetAside) {
  fs::create_directories(folder_ / "embrix/settings.json");
  open()->set("watts", 8.0);
  EXPECT_EQ(open()->stored("watts"), SettingValue(8.0));
  EXPECT_TRUE(fs::is_directory(folder_ / "embrix/settings.json.damaged"));

  fs::remove_all(folder_ / "embrix");
  fs::create_directory(folder_ / "embrix");
  ASSERT_EQ(mkfifo((folder_ / "embrix/settings.json").c_str(), 0600), 0);
  EXPECT_EQ(open()->stored("watts"), std::nullopt);
}

TEST_F(FileSettingsStoreTest, ALinkIsReadButReplacedWhenWritten) {
  folder_.write("dotfiles.json", R"({"watts": 8})");
  fs::create_directory(folder_ / "embrix");
  fs::create_symlink(folder_ / "dotfiles.json", folder_ / "embrix/settings.json");
  const auto store = open();
  EXPECT_EQ(store->stored("watts"), SettingValue(8.0));
  store->set("watts", 9.0);
  EXPECT_EQ(folder_.read("dotfiles.json"), R"({"watts": 8})");
  EXPECT_FALSE(fs::is_symlink(folder_ / "embrix/settings.json"));
  EXPECT_EQ(open()->stored("watts"), SettingValue(9.0));
}

TEST_F(FileSettingsStoreTest, ALinkToNothingHoldsNoSettings) {
  fs::create_directory(folder_ / "embrix");
  fs::create_symlink(folder_ / "nowhere", folder_ / "embrix/settings.json");
  EXPECT_EQ(open()->stored("watts"), std::nullopt);
  EXPECT_TRUE(fs::is_symlink(folder_ / "embrix/settings.json"));
}

TEST_F(FileSettingsStoreTest, NothingIsLeftBesideTheFile) {
  const auto store = open();
  for (int i = 0; i < 20; ++i) store->set("watts", static_cast<double>(i));
  EXPECT_FALSE(fs::is_empty(folder_ / "embrix"));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_ / "embrix"), {}), 1);
}

TEST_F(FileSettingsStoreTest, ASuiteHasSettingsFromItsFirstKeyOn) {
  FileSettingsStores stores(folder_ / "embrix");
  EXPECT_FALSE(stores.hasSettings(""));
  EXPECT_FALSE(stores.hasSettings("other"));
  EXPECT_FALSE(stores.hasSettings("../other"));
  stores.open("other")->set("appearance", text("dark"));
  EXPECT_FALSE(stores.hasSettings(""));
  EXPECT_TRUE(stores.hasSettings("other"));
  stores.open("other")->remove("appearance");
  EXPECT_FALSE(stores.hasSettings("other"));
}

TEST_F(FileSettingsStoreTest, ADamagedFileCountsAsSettings) {
  writeFile("{\"appear");
  EXPECT_TRUE(FileSettingsStores(folder_ / "embrix").hasSettings(""));
  EXPECT_EQ(file(), "{\"appear");
}

TEST_F(FileSettingsStoreTest, SettingsAreCopiedWithWhateverTheyHoldAndStay) {
  fs::create_directory(folder_ / "embrix");
  folder_.write("embrix/former.json", R"({"appearance":"dark","last check":{"date":[1,null]}})");
  FileSettingsStores stores(folder_ / "embrix");
  stores.copySettings("former", "");
  EXPECT_EQ(parseJson(file()), parseJson(folder_.read("embrix/former.json")));
  EXPECT_EQ(stores.open("")->stored("appearance"), text("dark"));
}

TEST_F(FileSettingsStoreTest, WhatCannotBeCopiedChangesNothing) {
  writeFile(R"({"appearance":"dark"})");
  folder_.write("embrix/damaged.json", "{");
  FileSettingsStores stores(folder_ / "embrix");
  stores.copySettings("missing", "");
  stores.copySettings("damaged", "");
  stores.copySettings("../former", "");
  stores.copySettings("", "../former");
  EXPECT_EQ(file(), R"({"appearance":"dark"})");
  EXPECT_FALSE(folder_.has("former.json"));
}

TEST(SettingsFolderTest, FollowsTheVariableOrTheHomeFolder) {
  const struct {
    std::string label;
    const char* variable;
    std::string expected;
  } rows[] = {
      {"unset", nullptr, "/home/ada/.config/embrix"},
      {"empty", "", "/home/ada/.config/embrix"},
      {"absolute", "/data/config", "/data/config/embrix"},
      {"relative paths are not valid there", "config", "/home/ada/.config/embrix"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(settingsFolder(row.variable, "/home/ada"), row.expected) << row.label;
  }
}

}  // namespace
}  // namespace embrix
