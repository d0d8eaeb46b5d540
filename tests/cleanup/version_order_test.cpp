#include "cleanup/version_order.h"

#include <gtest/gtest.h>

namespace embrix {
namespace {

TEST(VersionOrderTest, RunsOfDigitsCompareAsNumbers) {
  const struct {
    std::string_view lower, higher;
  } rows[] = {
      {"17.9", "17.10"},   {"17", "17.0"},
      {"17.4", "17.4.1"},  {"9", "10"},
      {"17.4", "18"},      {"", "1"},
      {"17a", "17b"},      {"99999999999999999999999999", "100000000000000000000000000"},
      {"1.2b3", "1.2b20"}, {"1.", "1.1"},
  };
  for (const auto& row : rows) {
    EXPECT_TRUE(compareVersions(row.lower, row.higher) < 0) << row.lower << " " << row.higher;
    EXPECT_TRUE(compareVersions(row.higher, row.lower) > 0) << row.lower << " " << row.higher;
  }
}

TEST(VersionOrderTest, LeadingZerosDoNotCount) {
  EXPECT_TRUE(compareVersions("17.04", "17.4") == 0);
  EXPECT_TRUE(compareVersions("0", "000") == 0);
  EXPECT_TRUE(compareVersions("17.4", "17.4") == 0);
  EXPECT_TRUE(compareVersions("", "") == 0);
}

}  // namespace
}  // namespace embrix
