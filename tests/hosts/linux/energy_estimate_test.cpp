#include "hosts/linux/energy_estimate.h"

#include <gtest/gtest.h>

namespace embrix {
namespace {

TEST(EnergyEstimateTest, WithoutACounterOneConstantStands) {
  EnergyEstimate estimate;
  estimate.update(10, std::nullopt, 5);
  estimate.update(20, std::nullopt, 15);
  EXPECT_EQ(estimate.wattsPerBusyCore(), kAssumedWattsPerBusyCore);
}

TEST(EnergyEstimateTest, PackageEnergyIsSharedAmongBusyCores) {
  EnergyEstimate estimate;
  estimate.update(10, 1'000'000, 100);
  EXPECT_EQ(estimate.wattsPerBusyCore(), kAssumedWattsPerBusyCore);
  // 60 joules in 2 seconds are 30 watts; 8 seconds of work in them are 4 cores.
  estimate.update(12, 61'000'000, 108);
  EXPECT_DOUBLE_EQ(estimate.wattsPerBusyCore(), 7.5);
}

TEST(EnergyEstimateTest, QuietMachineMakesNoFurnaces) {
  EnergyEstimate estimate;
  estimate.update(10, 0, 100);
  estimate.update(12, 10'000'000, 100.01);
  EXPECT_DOUBLE_EQ(estimate.wattsPerBusyCore(), 10);
  estimate.update(14, 500'000'000, 100.02);
  EXPECT_DOUBLE_EQ(estimate.wattsPerBusyCore(), 20);
}

TEST(EnergyEstimateTest, CounterThatWrapsLeavesTheFigure) {
  EnergyEstimate estimate;
  estimate.update(10, 1'000'000, 100);
  estimate.update(12, 61'000'000, 108);
  estimate.update(14, 5, 110);
  EXPECT_DOUBLE_EQ(estimate.wattsPerBusyCore(), 7.5);
  estimate.update(16, 20'000'005, 112);
  EXPECT_DOUBLE_EQ(estimate.wattsPerBusyCore(), 10);
}

TEST(EnergyEstimateTest, ClockThatStandsStillLeavesTheFigure) {
  EnergyEstimate estimate;
  estimate.update(10, 1'000'000, 100);
  estimate.update(10, 61'000'000, 108);
  EXPECT_EQ(estimate.wattsPerBusyCore(), kAssumedWattsPerBusyCore);
}

}  // namespace
}  // namespace embrix
