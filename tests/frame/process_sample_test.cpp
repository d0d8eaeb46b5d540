#include "frame/process_sample.h"

#include <cstdint>

#include <gtest/gtest.h>

namespace embrix {
namespace {

TEST(ProcessIDTest, IsThePidAndTheStartTime) {
  EXPECT_EQ(processID(412, 1750000000), "412-1750000000");
  EXPECT_EQ(processID(0, 0), "0-0");
  EXPECT_EQ(processID(INT32_MIN, UINT64_MAX), "-2147483648-18446744073709551615");
}

TEST(ProcessIDTest, ChangesWhenAPidIsGivenAgain) {
  EXPECT_NE(processID(412, 1750000000), processID(412, 1750000001));
}

TEST(ProcessIDTest, TwoLivesOfOnePidWithinASecondShareIt) {
  EXPECT_EQ(processID(412, 1750000000), processID(412, 1750000000));
}

}  // namespace
}  // namespace embrix
