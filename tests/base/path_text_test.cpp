#include "base/path_text.h"

#include <gtest/gtest.h>

namespace embrix {
namespace {

TEST(PathTextTest, APathIsANameInAFolder) {
  const struct {
    std::string_view label, path, parent, name;
  } rows[] = {
      {"deep", "/a/b/c", "/a/b", "c"},
      {"at the root", "/a", "/", "a"},
      {"the root", "/", "/", ""},
      {"slashes at the end", "/a/b//", "/a", "b"},
      {"double slashes", "/a//b", "/a", "b"},
      {"only slashes", "///", "/", ""},
      {"a bare name", "a", "", "a"},
      {"nothing", "", "", ""},
      {"dots are names", "/a/../b", "/a/..", "b"},
      {"any bytes", "/\xff/\n", "/\xff", "\n"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(PathText::parent(row.path), row.parent) << row.label;
    EXPECT_EQ(PathText::name(row.path), row.name) << row.label;
  }
}

TEST(PathTextTest, OnlyWholeComponentsLeadBelowAFolder) {
  const struct {
    std::string_view label, path, folder, below;
    bool isAtOrBelow;
  } rows[] = {
      {"below", "/Users/me/x/y", "/Users/me", "x/y", true},
      {"the folder itself", "/Users/me", "/Users/me", "", true},
      {"another who begins alike", "/Users/melanie/x", "/Users/me", "", false},
      {"above", "/Users", "/Users/me", "", false},
      {"a slash at the folder's end", "/Users/me/x", "/Users/me/", "x", true},
      {"a slash at the path's end", "/Users/me/", "/Users/me", "", true},
      {"below the root", "/x", "/", "x", true},
      {"the root", "/", "/", "", true},
      {"no folder", "/x", "", "", false},
      {"nothing at all", "", "", "", false},
      {"double slashes", "/a//b", "/a", "b", true},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(PathText::below(row.path, row.folder), row.below) << row.label;
    EXPECT_EQ(PathText::isBelow(row.path, row.folder), !row.below.empty()) << row.label;
    EXPECT_EQ(PathText::isAtOrBelow(row.path, row.folder), row.isAtOrBelow) << row.label;
  }
}

TEST(PathTextTest, JoiningPutsOneSlashBetween) {
  EXPECT_EQ(PathText::joined("/a", "b"), "/a/b");
  EXPECT_EQ(PathText::joined("/a/", "b/c"), "/a/b/c");
  EXPECT_EQ(PathText::joined("/", "b"), "/b");
}

}  // namespace
}  // namespace embrix
