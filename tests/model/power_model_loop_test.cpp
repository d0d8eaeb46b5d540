#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "worlds/model_world.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class PowerModelLoopTest : public testing::Test {
 protected:
  // Seconds from the end of this frame until the next is asked for.
  double pauseAfter(Frame taken) {
    world.take(std::move(taken));
    const double end = world.scheduler.up;
    while (world.scheduler.workWaiting() == 0) world.scheduler.advance(0.5);
    return world.scheduler.up - end;
  }

  ModelWorld world;
  Frame frame = frameAt(kMorning, {app("Safari", 3)});
};

struct IntervalCase {
  std::string label;
  double sampleInterval = 2;
  bool showsWatts = true;
  int surfaces = 0;
  double expected = 0;
};

class IntervalRule : public testing::TestWithParam<IntervalCase> {};

TEST_P(IntervalRule, IsThePauseBetweenFrames) {
  ModelWorld world;
  world.defaults.set(SettingKeys::kSampleInterval, GetParam().sampleInterval);
  world.defaults.set(SettingKeys::kShowWattsInMenuBar, GetParam().showsWatts);
  PowerModel& model = world.start();
  for (int i = 0; i < GetParam().surfaces; ++i) model.surfaceAppeared();
  world.take(frameAt(kMorning));
  ASSERT_EQ(world.scheduler.workWaiting(), 0U);
  world.scheduler.advance(GetParam().expected - 0.01);
  EXPECT_EQ(world.scheduler.workWaiting(), 0U);
  world.scheduler.advance(0.01);
  EXPECT_EQ(world.scheduler.workWaiting(), 1U);
}

INSTANTIATE_TEST_SUITE_P(
    PowerModelLoopTest, IntervalRule,
    testing::Values(IntervalCase{"AsSetWithWattsInTheMenuBar", 3, true, 0, 3},
                    IntervalCase{"AsSetWithASurfaceOpen", 3, false, 1, 3},
                    IntervalCase{"TenSecondsUnseen", 3, false, 0, 10},
                    IntervalCase{"TenSecondsUnseenHoweverShortIsSet", 1, false, 0, 10},
                    IntervalCase{"TenSecondsUnseenHoweverLongIsSet", 60, false, 0, 10},
                    IntervalCase{"NeverBelowOneSecond", 0.1, true, 0, 1},
                    IntervalCase{"NeverBelowOneSecondFromANegative", -5, true, 0, 1},
                    IntervalCase{"NoNumberIsNoInterval", std::nan(""), true, 0, 10},
                    IntervalCase{"InfinityIsNoInterval", std::numeric_limits<double>::infinity(),
                                 true, 0, 10}),
    [](const auto& test) { return test.param.label; });

TEST_F(PowerModelLoopTest, OpeningASurfaceBringsTheIntervalBackFromTheNextFrameOn) {
  world.defaults.set(SettingKeys::kShowWattsInMenuBar, false);
  PowerModel& model = world.start();
  EXPECT_EQ(pauseAfter(frame), 10);
  model.surfaceAppeared();
  EXPECT_EQ(pauseAfter(frame), 2);
  model.surfaceDisappeared();
  EXPECT_EQ(pauseAfter(frame), 10);
}

TEST_F(PowerModelLoopTest, SurfacesThatGoMoreOftenThanTheyComeCountAsNone) {
  PowerModel& model = world.start();
  model.surfaceDisappeared();
  EXPECT_EQ(*model.visibleSurfaces(), 0);
  model.surfaceAppeared();
  EXPECT_EQ(*model.visibleSurfaces(), 1);
}

TEST_F(PowerModelLoopTest, AFrameThatDoesNotComeIsAskedForAgain) {
  PowerModel& model = world.start();
  world.takeNothing();
  EXPECT_EQ(*model.frame(), std::nullopt);
  world.take(frame);
  EXPECT_EQ((*model.frame())->groups, frame.groups);
}

TEST_F(PowerModelLoopTest, FramesAreMadeByWorkThatTheUserWaitsForAndFilesAreNot) {
  world.defaults.set(SettingKeys::kSampleInterval, 30.0);
  world.start();
  world.take(frame);
  EXPECT_THAT(world.scheduler.priorities,
              ElementsAre(WorkPriority::userInitiated, WorkPriority::utility));
}

TEST_F(PowerModelLoopTest, TheFrameBeforeLastServesTheNextOne) {
  world.start();
  for (int i = 0; i < 4; ++i) world.take(frameAt(kMorning + 2 * i));
  ASSERT_THAT(world.spent, SizeIs(2));
  EXPECT_EQ(world.spent[0].date, kMorning);
  EXPECT_EQ(world.spent[1].date, kMorning + 2);
}

TEST_F(PowerModelLoopTest, AModelThatEndsWhileAFrameIsMadeLeavesNothingBehind) {
  world.start();
  world.scheduler.doWork();
  world.renew();
  world.scheduler.runBackground();
  EXPECT_EQ(*world.model().frame(), std::nullopt);
}

TEST_F(PowerModelLoopTest, WhoWaitsForAFrameThatIsThereHasItAtOnce) {
  PowerModel& model = world.start();
  world.take(frame);
  std::optional<Frame> got;
  model.waitForFrame(5, [&](const std::optional<Frame>& present) { got = present; });
  EXPECT_TRUE(got.has_value());
}

TEST_F(PowerModelLoopTest, WhoWaitsForTheFirstFrameHasItSoonAfterItCame) {
  PowerModel& model = world.start();
  int replies = 0;
  std::optional<Frame> got;
  model.waitForFrame(5, [&](const std::optional<Frame>& present) {
    ++replies;
    got = present;
  });
  world.scheduler.advance(3);
  EXPECT_EQ(replies, 0);
  world.take(frameAt(world.scheduler.wall));
  world.scheduler.advance(0.2);
  EXPECT_EQ(replies, 1);
  EXPECT_TRUE(got.has_value());
  world.scheduler.advance(100);
  EXPECT_EQ(replies, 1);
}

TEST_F(PowerModelLoopTest, WhoWaitsInVainIsToldSoAfterTheTime) {
  PowerModel& model = world.start();
  std::vector<bool> replies;
  model.waitForFrame(
      5, [&](const std::optional<Frame>& present) { replies.push_back(present.has_value()); });
  world.scheduler.advance(4.9);
  EXPECT_THAT(replies, IsEmpty());
  world.scheduler.advance(0.3);
  EXPECT_THAT(replies, ElementsAre(false));
}

TEST_F(PowerModelLoopTest, AClockThatIsSetBackKeepsNobodyWaiting) {
  PowerModel& model = world.start();
  int replies = 0;
  model.waitForFrame(5, [&](const std::optional<Frame>&) { ++replies; });
  world.scheduler.wall -= 365 * 86400.0;
  world.scheduler.advance(5.3);
  EXPECT_EQ(replies, 1);
}

TEST_F(PowerModelLoopTest, OneWhoIsAnsweredMayWaitAnew) {
  PowerModel& model = world.start();
  int replies = 0;
  model.waitForFrame(1, [&](const std::optional<Frame>&) {
    ++replies;
    model.waitForFrame(1, [&](const std::optional<Frame>&) { ++replies; });
  });
  world.scheduler.advance(3);
  EXPECT_EQ(replies, 2);
}

}  // namespace
}  // namespace embrix
