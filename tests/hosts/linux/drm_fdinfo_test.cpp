#include "hosts/linux/drm_fdinfo.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace embrix {
namespace {

using Times = std::vector<std::optional<std::uint64_t>>;

constexpr const char* kIntel =
    "pos:\t0\nflags:\t02100002\nmnt_id:\t26\nino:\t740\n"
    "drm-driver:\ti915\ndrm-client-id:\t42\ndrm-pdev:\t0000:00:02.0\n"
    "drm-total-system0:\t5120 KiB\n"
    "drm-engine-render:\t9288864723 ns\ndrm-engine-copy:\t2035071108 ns\n"
    "drm-engine-video:\t0 ns\ndrm-engine-capacity-video:\t2\n";

TEST(DrmFdinfoTest, EnginesAreReadInTheirOrder) {
  const auto usage = parseDrmFdinfo(kIntel);
  ASSERT_TRUE(usage);
  EXPECT_EQ(usage->id, "0000:00:02.0#42");
  EXPECT_EQ(usage->engines, (Times{9288864723, 2035071108, 0}));
}

TEST(DrmFdinfoTest, EveryTextHasItsUsageOrNone) {
  struct Case {
    const char* label;
    std::string text;
    std::optional<DrmClientUsage> expected;
  };
  const Case cases[] = {
      {"empty", "", std::nullopt},
      {"some other file", "pos:\t0\nflags:\t0100000\n", std::nullopt},
      {"no client", "drm-engine-render: 5 ns\n", std::nullopt},
      {"an empty client", "drm-client-id:\ndrm-engine-render: 5 ns\n", std::nullopt},
      {"a client without engines", "drm-client-id: 1\n", DrmClientUsage{"#1", {}}},
      {"blanks instead of tabs", "drm-client-id: 1\ndrm-engine-gfx:   7 ns\n",
       DrmClientUsage{"#1", {7}}},
      {"cycles where nothing else is counted",
       "drm-client-id: 1\ndrm-cycles-rcs: 28257900\ndrm-total-cycles-rcs: 7655183225\n",
       DrmClientUsage{"#1", {28257900}}},
      {"times win over cycles", "drm-client-id: 1\ndrm-cycles-rcs: 9\ndrm-engine-rcs: 5 ns\n",
       DrmClientUsage{"#1", {5}}},
      {"another unit", "drm-client-id: 1\ndrm-engine-rcs: 5 ms\n",
       DrmClientUsage{"#1", {std::nullopt}}},
      {"no unit", "drm-client-id: 1\ndrm-engine-rcs: 5\n", DrmClientUsage{"#1", {std::nullopt}}},
      {"a negative time", "drm-client-id: 1\ndrm-engine-rcs: -5 ns\n",
       DrmClientUsage{"#1", {std::nullopt}}},
      {"text", "drm-client-id: 1\ndrm-engine-rcs: lots ns\n", DrmClientUsage{"#1", {std::nullopt}}},
      {"the largest", "drm-client-id: 1\ndrm-engine-rcs: 18446744073709551615 ns\n",
       DrmClientUsage{"#1", {std::numeric_limits<std::uint64_t>::max()}}},
      {"one above it", "drm-client-id: 1\ndrm-engine-rcs: 18446744073709551616 ns\n",
       DrmClientUsage{"#1", {std::nullopt}}},
      {"a line without a colon", "drm-client-id: 1\ndrm-engine-rcs\n", DrmClientUsage{"#1", {}}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(parseDrmFdinfo(c.text), c.expected) << c.label;
  }
}

TEST(DrmFdinfoTest, EveryTruncationIsSurvived) {
  const std::string whole = kIntel;
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const auto usage = parseDrmFdinfo(whole.substr(0, size));
    if (usage) {
      EXPECT_LE(usage->engines.size(), 3u);
    }
  }
}

}  // namespace
}  // namespace embrix
