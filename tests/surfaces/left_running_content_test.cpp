#include "surfaces/left_running_content.h"

#include <gtest/gtest.h>

#include "worlds/popover_world.h"

namespace embrix {
namespace {

class LeftRunningContentTest : public testing::Test {
 protected:
  LeftRunningContentTest() { world.start(); }

  LeftRunningContent take(Frame frame) {
    world.take(std::move(frame));
    return LeftRunningContent::of(world.model(), {});
  }
  LeftRunningRowContent takeOne(ForgottenItem item) {
    Frame frame = frameWithForgotten(world.scheduler.wall, 1);
    item.root.id = frame.forgotten.front().root.id;
    item.members = frame.forgotten.front().members;
    frame.forgotten = {std::move(item)};
    return take(std::move(frame)).rows.at(0);
  }

  ModelWorld world;
};

TEST_F(LeftRunningContentTest, NothingLeftRunningLeavesNothingToFree) {
  EXPECT_EQ(take(frameAt(world.scheduler.wall)), LeftRunningContent{});
}

TEST_F(LeftRunningContentTest, ThreeRowsHaveNoMore) {
  const auto content = take(frameWithForgotten(world.scheduler.wall, 3));
  EXPECT_EQ(content.rows.size(), 3u);
  EXPECT_FALSE(content.more);
  EXPECT_EQ(content.freeUp, "Free up 6.0 GB");
}

TEST_F(LeftRunningContentTest, OfFourRowsThreeShowAndOneIsMore) {
  const auto content = take(frameWithForgotten(world.scheduler.wall, 4));
  EXPECT_EQ(content.rows.size(), 3u);
  EXPECT_EQ(content.more, "+1 more");
  EXPECT_EQ(content.freeUp, "Free up 10.0 GB") << "what is not shown is freed as well";
}

TEST_F(LeftRunningContentTest, TheHeaviestRowStandsFirst) {
  Frame frame = frameWithForgotten(world.scheduler.wall, 3);
  std::reverse(frame.forgotten.begin(), frame.forgotten.end());
  const auto content = take(std::move(frame));
  EXPECT_EQ(content.rows[0].title, "tool 0");
  EXPECT_EQ(content.rows[0].memory, "3.0 GB");
  EXPECT_EQ(content.rows[2].title, "tool 2");
}

TEST_F(LeftRunningContentTest, TheTileIsColouredByAge) {
  EXPECT_EQ(LeftRunningRowContent::tileFor(100 * 3600), EX::Hue::coralSoft);
  EXPECT_EQ(LeftRunningRowContent::tileFor(100 * 3600 - 1), EX::Hue::yellowSoft);
  EXPECT_EQ(LeftRunningRowContent::tileFor(12 * 3600), EX::Hue::yellowSoft);
  EXPECT_EQ(LeftRunningRowContent::tileFor(12 * 3600 - 1), EX::Hue::mintSoft);
}

TEST_F(LeftRunningContentTest, ARowTellsAgeAndProject) {
  ForgottenItem item = forgotten("npm run dev", {row(1, "node", 0)}, 37 * 3600);
  item.project = "lemonade-stand";
  item.symbol = "server.rack";
  item.root.uid = kMe;
  const auto content = takeOne(item);
  EXPECT_EQ(content.title, "npm run dev");
  EXPECT_EQ(content.detail, "37h · lemonade-stand");
  EXPECT_EQ(content.symbol, "server.rack");
  EXPECT_EQ(content.stopHelp, "Stop npm run dev");
  EXPECT_TRUE(content.canStop);
}

TEST_F(LeftRunningContentTest, WithoutAProjectARowIsInTheBackground) {
  const ForgottenItem item = forgotten("Gradle daemon", {row(1, "java", 0)}, 7200);
  EXPECT_EQ(takeOne(item).detail, "2h · background");
}

TEST_F(LeftRunningContentTest, TheMenuHoldsItsItemsInOrder) {
  ForgottenItem item = forgotten("npm run dev", {row(1, "node", 0)});
  item.root.directory = "/Users/me/code";
  EXPECT_EQ(labelsOf(takeOne(item).menu),
            (std::vector<std::string>{"Stop", "Calm (Efficiency Cores)",
                                      "Keep Running, Don't List It", "Show Folder in Finder"}));
}

TEST_F(LeftRunningContentTest, TheMenuLeavesOutWhatCannotBeDone) {
  ForgottenItem item = forgotten("npm run dev", {row(1, "node", 0)});
  item.root.uid = kRoot;
  EXPECT_EQ(labelsOf(takeOne(item).menu),
            (std::vector<std::string>{"Calm (Efficiency Cores)", "Keep Running, Don't List It"}));
}

TEST_F(LeftRunningContentTest, ACalmedRowCanBeRestored) {
  const Frame frame = frameWithForgotten(world.scheduler.wall, 1);
  world.take(frame);
  world.bringToLife(frame);
  world.model().calm(world.model().forgottenRows().front().processes);
  const auto content = LeftRunningContent::of(world.model(), {});
  EXPECT_EQ(content.rows.at(0).menu.at(1).label, "Restore Full Speed");
}

TEST_F(LeftRunningContentTest, ARowThatWasStoppedSaysSo) {
  const Frame frame = frameWithForgotten(world.scheduler.wall, 2);
  world.take(frame);
  const std::string id = frame.forgotten[1].id().string();
  const auto content = LeftRunningContent::of(world.model(), {id});
  EXPECT_FALSE(content.rows.at(0).isStopping);
  EXPECT_TRUE(content.rows.at(1).isStopping);
}

}  // namespace
}  // namespace embrix
