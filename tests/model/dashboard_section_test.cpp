#include "model/dashboard_section.h"

#include <gtest/gtest.h>

namespace embrix {
namespace {

TEST(DashboardSectionTest, EveryPageIsFoundByItsWordAndByNoOther) {
  for (const DashboardSection section : kDashboardSections) {
    EXPECT_EQ(dashboardSectionOf(dashboardSectionWord(section)), section);
  }
  EXPECT_EQ(kDashboardSections.size(), 7U);
  EXPECT_EQ(dashboardSectionOf("running"), DashboardSection::running);
  EXPECT_EQ(dashboardSectionOf("Overview"), std::nullopt);
  EXPECT_EQ(dashboardSectionOf(""), std::nullopt);
}

}  // namespace
}  // namespace embrix
