#include "surfaces/awake_content.h"

#include <gtest/gtest.h>

#include "worlds/popover_world.h"

namespace embrix {
namespace {

class AwakeContentTest : public testing::Test {
 protected:
  AwakeContentTest() { world.start(); }

  double now() const { return world.scheduler.wall; }

  std::vector<BlockerContent> take(const SleepBlocker& blocker, std::vector<AppGroup> groups = {}) {
    // The model takes a frame at the frame's own date.
    Frame frame = frameAt(now(), std::move(groups));
    frame.sleepBlockers = {blocker};
    world.take(std::move(frame));
    return AwakeContent::of(world.model(), now());
  }

  SleepBlocker held(double seconds) const {
    return {.pid = 77,
            .processName = "caffeinate",
            .preventsSystemSleep = true,
            .preventsDisplaySleep = true,
            .reasons = {},
            .since = now() - seconds};
  }

  ModelWorld world;
};

TEST_F(AwakeContentTest, ShowsOnlyWhatHasHeldForHalfAnHour) {
  EXPECT_TRUE(take(held(1799)).empty());
  EXPECT_EQ(take(held(1800)).size(), 1u);
  SleepBlocker unknown = held(0);
  unknown.since = std::nullopt;
  EXPECT_TRUE(take(unknown).empty());
}

TEST_F(AwakeContentTest, AnAppAtWorkIsNotBlamed) {
  EXPECT_TRUE(take(held(7200), {group("render", "Render", {row(77, "render", 0.5)})}).empty());
  EXPECT_EQ(take(held(7200), {group("render", "Render", {row(77, "render", 0.49)})}).size(), 1u);
}

TEST_F(AwakeContentTest, TellsWhatItKeepsAwakeAndForHowLong) {
  const auto both = take(held(3 * 3600)).at(0);
  EXPECT_EQ(both.name, "caffeinate (keep awake)");
  EXPECT_EQ(both.detail, "3h · Keeps your Mac awake");
  SleepBlocker display = held(3 * 3600);
  display.preventsSystemSleep = false;
  EXPECT_EQ(take(display).at(0).detail, "3h · Keeps the display on");
}

TEST_F(AwakeContentTest, AReversedDomainNameIsMadeFriendly) {
  SleepBlocker blocker = held(7200);
  blocker.processName = "com.example.Streamer";
  EXPECT_EQ(take(blocker).at(0).name, "Streamer");
}

TEST_F(AwakeContentTest, WithoutAFrameNothingIsBlamed) {
  EXPECT_TRUE(AwakeContent::of(world.model(), now()).empty());
}

}  // namespace
}  // namespace embrix
