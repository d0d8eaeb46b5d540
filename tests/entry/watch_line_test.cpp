#include "entry/watch_line.h"

#include <gtest/gtest.h>

#include <string>

#include "worlds/model_world.h"

namespace embrix {
namespace {

TEST(WatchLineTest, IsOneObjectOfAlphabeticalKeysOnOneLine) {
  ModelWorld world;
  world.start();
  Frame frame = frameAt(kMorning + 0.256, {app("node", 12.345), app("Mail", 0.5, 101)});
  world.bringToLife(frame);
  world.take(frame);
  world.model().calm(world.model().targetsInGroup("node.app"));
  EXPECT_EQ(watchLine(world.model(), {"hot-node.app", "throttle"}),
            "{\"alerts\":[\"hot-node.app\",\"throttle\"],\"calmed\":[100],\"loadLevel\":\"warm\","
            "\"runaways\":[],\"time\":1749978000.26,\"totalWatts\":12.85,"
            "\"verdict\":\"node is heating your Mac\"}\n");
}

TEST(WatchLineTest, ACalmMachineHasALineAsWell) {
  ModelWorld world;
  world.start();
  world.take(frameAt(kMorning));
  EXPECT_EQ(watchLine(world.model(), {}),
            "{\"alerts\":[],\"calmed\":[],\"loadLevel\":\"calm\",\"runaways\":[],"
            "\"time\":1749978000,\"totalWatts\":0,\"verdict\":\"All quiet\"}\n");
}

TEST(WatchLineTest, RunawaysStandInOrder) {
  ModelWorld world;
  world.alertAt(3, 1);
  world.start();
  for (int i = 0; i < 40; ++i) {
    world.take(frameAt(kMorning + 2 * i, {app("b", 5), app("c", 4, 101), app("a", 6, 102)}));
  }
  const std::string line = watchLine(world.model(), {});
  EXPECT_NE(line.find("\"runaways\":[\"a.app\",\"b.app\",\"c.app\"]"), std::string::npos) << line;
}

TEST(WatchLineTest, NamesOfAnyBytesStayOnTheLine) {
  ModelWorld world;
  world.start();
  world.take(frameAt(kMorning, {app("n\n\"\xff\x1b[2J", 20)}));
  const std::string line = watchLine(world.model(), {"hot-\n"});
  EXPECT_EQ(line.find('\n'), line.size() - 1);
  EXPECT_EQ(line.find('\x1b'), std::string::npos);
}

}  // namespace
}  // namespace embrix
