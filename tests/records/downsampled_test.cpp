#include "records/downsampled.h"

#include <numeric>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace embrix {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;

const std::vector<double> kThree = {1, 2, 6};
const std::vector<double> kTen = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};

TEST(DownsampledTest, AListThatIsShortEnoughIsUnchanged) {
  EXPECT_EQ(downsampled(kThree, 3), kThree);
  EXPECT_EQ(downsampled(kThree, 4), kThree);
  EXPECT_THAT(downsampled({}, 3), SizeIs(0));
}

TEST(DownsampledTest, ACountBelow1LeavesTheListUnchanged) {
  EXPECT_EQ(downsampled(kThree, 0), kThree);
  EXPECT_EQ(downsampled(kThree, -7), kThree);
}

TEST(DownsampledTest, TenValuesAsThreeAreTheMeansOfStretches) {
  EXPECT_THAT(downsampled(kTen, 3), ElementsAre(1, 4, 7.5));
  EXPECT_THAT(downsampled(kTen, 1), ElementsAre(4.5));
}

TEST(DownsampledTest, TheResultHasAsManyValuesAsAskedFor) {
  std::vector<double> values(1801, 3.5);
  for (int count = 1; count <= 1801; count += 13) {
    EXPECT_THAT(downsampled(values, count), SizeIs(count));
    EXPECT_THAT(downsampled(values, count), Each(3.5));
  }
}

}  // namespace
}  // namespace embrix
