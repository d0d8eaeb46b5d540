#include "running/friendly_name.h"

#include <map>
#include <string>

#include <gtest/gtest.h>

namespace embrix {
namespace {

struct NameCase {
  const char* label;
  std::string name;
  std::string expected;
};

auto labelOf = [](const auto& test) { return test.param.label; };

class FriendlyNameRule : public testing::TestWithParam<NameCase> {};

TEST_P(FriendlyNameRule, NamesTheProcess) {
  EXPECT_EQ(FriendlyName::name(GetParam().name).string(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Names, FriendlyNameRule,
    testing::Values(
        NameCase{"TableRow", "mdworker_shared", "Spotlight indexing"},
        NameCase{"TableRowWithPrefix", "com.docker.backend", "Docker"},
        NameCase{"TableIsCaseSensitive", "windowserver", "windowserver"},
        NameCase{"LastPieceOfCom", "com.example.Updater", "Updater"},
        NameCase{"LastPieceOfOrg", "org.mozilla.firefox", "firefox"},
        NameCase{"PieceOfFour", "com.example.abcd", "abcd"},
        NameCase{"PieceOfThreeStays", "com.example.abc", "com.example.abc"},
        NameCase{"EmptyPiecesAreDropped", "com.example.Updater..", "Updater"},
        NameCase{"OnlyThePrefix", "com.", "com."}, NameCase{"OnlyDots", "org....", "org...."},
        NameCase{"BlankKeepsTheName", "com.example.My Updater", "com.example.My Updater"},
        NameCase{"OtherPrefixStays", "net.example.Updater", "net.example.Updater"},
        NameCase{"PrefixNeedsItsDot", "company.example.Updater", "company.example.Updater"},
        NameCase{"FileNameStays", "node.js", "node.js"}, NameCase{"PlainStays", "node", "node"},
        NameCase{"EmptyStays", "", ""},
        NameCase{"CharactersNotBytesAreCounted", "com.example.日本", "com.example.日本"},
        NameCase{"AccentsAreNoCharacters", "com.example.e\u0301e\u0301",
                 "com.example.e\u0301e\u0301"},
        NameCase{"FourWideCharacters", "com.example.日本電気", "日本電気"},
        NameCase{"IllFormedBytes", "com.example.\xff\xfe", "com.example.\xff\xfe"}),
    labelOf);

TEST(FriendlyNameTest, EveryRowIsFoundByItsProcessName) {
  ASSERT_EQ(FriendlyName::table().size(), 39u);
  for (const FriendlyName::Row& row : FriendlyName::table()) {
    ASSERT_EQ(FriendlyName::row(row.processName), &row) << row.processName.view();
    EXPECT_EQ(FriendlyName::name(row.processName), row.displayName);
    EXPECT_NE(row.displayName, row.processName);
    EXPECT_EQ(row.groupKey.string(), "named:" + row.displayName.string());
  }
}

TEST(FriendlyNameTest, UnknownNameHasNoRow) {
  EXPECT_EQ(FriendlyName::row("node"), nullptr);
  EXPECT_EQ(FriendlyName::row(""), nullptr);
}

TEST(FriendlyNameTest, UnchangedNameSharesItsCharacters) {
  const SharedText name("a tool of one's own");
  EXPECT_EQ(FriendlyName::name(name).view().data(), name.view().data());
}

TEST(FriendlyNameTest, BundlesAreKnownByProcessAndByDisplayName) {
  std::map<std::string, std::string> expected;
  for (const FriendlyName::Row& row : FriendlyName::table()) {
    if (!row.bundleID) continue;
    expected[row.processName.string()] = row.bundleID->string();
    expected[row.displayName.string()] = row.bundleID->string();
  }
  std::map<std::string, std::string> actual;
  for (const auto& [name, bundle] : FriendlyName::bundleByName()) {
    actual[name.string()] = bundle.string();
  }
  EXPECT_EQ(actual, expected);
  EXPECT_EQ(actual.at("adb"), "com.google.android.studio");
  EXPECT_EQ(actual.at("Time Machine"), "com.apple.backup.launcher");
  EXPECT_EQ(actual.at("Xcode indexing"), "com.apple.dt.Xcode");
  EXPECT_FALSE(actual.contains("kernel_task"));
  EXPECT_FALSE(actual.contains("macOS kernel"));
}

}  // namespace
}  // namespace embrix
