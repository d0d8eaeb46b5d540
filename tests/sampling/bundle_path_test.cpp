#include "sampling/bundle_path.h"

#include <gtest/gtest.h>

namespace embrix {
namespace {

TEST(BundlePathTest, IsTheOutermostBundleThatThePathLeadsInto) {
  struct {
    std::string_view path;
    std::optional<std::string_view> expected;
  } const cases[] = {
      {"/Applications/A.app/Contents/MacOS/A", "/Applications/A.app"},
      {"/Applications/A.app/Contents/Frameworks/B.app/Contents/MacOS/B", "/Applications/A.app"},
      {"/Applications/A.app/", "/Applications/A.app"},
      {"/x.application/y.app/z", "/x.application/y.app"},
      {"A.app/x", "A.app"},
      {".app/x", ".app"},
      {"/Applications/A.app", std::nullopt},
      {"/Applications/A.appex/x", std::nullopt},
      {"/Applications/A.APP/x", std::nullopt},
      {"/usr/bin/env", std::nullopt},
      {"", std::nullopt},
  };
  for (const auto& [path, expected] : cases) EXPECT_EQ(outermostBundle(path), expected) << path;
}

}  // namespace
}  // namespace embrix
