#include "entry/report_cleanup.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace embrix {
namespace {

constexpr double kNow = 1'750'000'000;
constexpr double kDay = 86'400;

std::string lineOf(const CleanupItem& item, CleanupSpot::Kind kind = CleanupSpot::Kind::cache) {
  const std::string report =
      reportCleanup({CleanupSpot{.title = "Spot", .kind = kind, .items = {item}}}, kNow);
  return report.substr(report.find('\n') + 1);
}

TEST(ReportCleanupTest, AnItemIsOneLine) {
  const CleanupItem plain{.title = "npm cache", .detail = "~/.npm", .bytes = 12'000'000};
  const auto with = [&](auto change) {
    CleanupItem item = plain;
    change(item);
    return lineOf(item);
  };
  EXPECT_EQ(lineOf(plain), "    12 MB    npm cache · ~/.npm · age unknown\n");
  EXPECT_EQ(with([](CleanupItem& item) { item.detail.reset(); }),
            "    12 MB    npm cache · - · age unknown\n");
  EXPECT_EQ(with([](CleanupItem& item) { item.lastUsed = kNow - 3 * kDay; }),
            "    12 MB    npm cache · ~/.npm · used 3 days ago\n");
  EXPECT_EQ(with([](CleanupItem& item) {
              item.lastUsed = kNow - 99 * kDay;
              item.dateIsAdded = true;
            }),
            "    12 MB    npm cache · ~/.npm · added 3 months ago\n");
  EXPECT_EQ(with([](CleanupItem& item) { item.lastUsed = kNow + kDay; }),
            "    12 MB    npm cache · ~/.npm · used today\n");
  EXPECT_EQ(with([](CleanupItem& item) { item.inUse = "npm is running"; }),
            "    12 MB    npm cache · ~/.npm · age unknown · IN USE: npm is running\n");
  EXPECT_EQ(with([](CleanupItem& item) { item.obsolete = "It is gone"; }),
            "    12 MB    npm cache · ~/.npm · age unknown · OBSOLETE: It is gone · UNUSED\n");
  EXPECT_EQ(with([](CleanupItem& item) {
              item.inUse = "npm is running";
              item.obsolete = "It is gone";
            }),
            "    12 MB    npm cache · ~/.npm · age unknown · IN USE: npm is running"
            " · OBSOLETE: It is gone\n");
}

TEST(ReportCleanupTest, AnItemIsUnusedFromThirtyDaysOn) {
  CleanupItem item{.title = "a", .bytes = 1'000'000, .lastUsed = kNow - 30 * kDay};
  EXPECT_TRUE(lineOf(item).ends_with("used 4 weeks ago · UNUSED\n"));
  // The report says it of what is only for review, too.
  EXPECT_TRUE(lineOf(item, CleanupSpot::Kind::review).ends_with(" · UNUSED\n"));
  item.lastUsed = kNow - 30 * kDay + 1;
  EXPECT_TRUE(lineOf(item).ends_with("used 4 weeks ago\n"));
}

TEST(ReportCleanupTest, SizesAreEightCharactersWide) {
  const struct {
    std::int64_t bytes;
    std::string_view size;
  } rows[] = {
      {1'000'000, "1 MB    "},
      {999'400'000, "999 MB  "},
      {999'600'000, "1000 MB "},
      {1'000'000'000, "1.0 GB  "},
      {9'949'000'000, "9.9 GB  "},
      {9'960'000'000, "10.0 GB "},
      {10'000'000'000, "10 GB   "},
      {123'456'000'000'000, "123456 G"},
      {std::numeric_limits<std::int64_t>::max(), "92233720"},
  };
  for (const auto& row : rows) {
    const std::string line = lineOf({.title = "title", .bytes = row.bytes});
    EXPECT_EQ(line, "    " + std::string(row.size) + " title · - · age unknown\n");
  }
}

TEST(ReportCleanupTest, ASpotWithItemsHasAHeadLineWithTheirSum) {
  const CleanupItem half{.title = "a", .bytes = 600'000'000};
  const std::string report = reportCleanup(
      {{.title = "Empty"}, {.title = "Full", .items = {half, half}}, {.title = "Also empty"}},
      kNow);
  EXPECT_EQ(report,
            "Full · 1.2 GB\n"
            "    600 MB   a · - · age unknown\n"
            "    600 MB   a · - · age unknown\n");
  EXPECT_EQ(reportCleanup({}, kNow), "");
}

TEST(ReportCleanupTest, NoNameBreaksALine) {
  EXPECT_EQ(lineOf({.title = "a\nb\x1b[31m", .detail = "c\rd\xff · e", .bytes = 1'000'000}),
            "    1 MB     a\\x0ab\\x1b[31m · c\\x0dd\\xff · e · age unknown\n");
}

}  // namespace
}  // namespace embrix
