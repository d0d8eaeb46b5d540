#include "hosts/linux/gpu_source.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "captured_tree.h"

namespace embrix {
namespace {

class LinuxGpuSourceTest : public testing::Test {
 protected:
  void putCard() { tree.write("sys/class/drm/card0/device/vendor", "0x8086\n"); }
  void putHandle(int pid, int number, const std::string& target, const std::string& info) {
    tree.link(fmt::format("proc/{}/fd/{}", pid, number), target);
    tree.write(fmt::format("proc/{}/fdinfo/{}", pid, number), info);
    tree.write(fmt::format("proc/{}/comm", pid), fmt::format("name{}\n", pid));
  }
  void putClient(int pid, int number, int client, const std::string& time) {
    putHandle(pid, number, "/dev/dri/renderD128",
              fmt::format("pos:\t0\ndrm-pdev:\t0000:00:02.0\ndrm-client-id:\t{}\n"
                          "drm-engine-render:\t{} ns\n",
                          client, time));
  }
  LinuxGpuSource source() {
    return LinuxGpuSource(tree.root(), [this] { return uptime; });
  }
  static GpuClient client(int pid, std::uint64_t time) {
    return {fmt::format("pid {}, name{}", pid, pid), {{time}}};
  }
  std::optional<std::int64_t> utilization(LinuxGpuSource& gpu) {
    const auto statistics = gpu.performanceStatistics();
    return statistics ? integerAt(*statistics, "Device Utilization %") : std::nullopt;
  }

  CapturedTree tree;
  double uptime = 100;
};

using Clients = std::vector<GpuClient>;

TEST_F(LinuxGpuSourceTest, EachClientIsItsProcessesOwn) {
  putCard();
  putClient(300, 5, 1, "1000");
  putClient(20, 9, 2, "500");
  EXPECT_EQ(source().clients(), (Clients{client(20, 500), client(300, 1000)}));
}

TEST_F(LinuxGpuSourceTest, OnlyHandlesOnGraphicsDevicesAreRead) {
  putCard();
  putClient(10, 5, 1, "1000");
  putHandle(10, 6, "/home/ada/dev/dri/fake", "drm-client-id:\t9\ndrm-engine-render:\t9 ns\n");
  putHandle(10, 7, "/dev/driver", "drm-client-id:\t9\ndrm-engine-render:\t9 ns\n");
  putHandle(10, 8, "socket:[5]", "drm-client-id:\t9\ndrm-engine-render:\t9 ns\n");
  putHandle(11, 3, "/dev/dri/card0", "pos:\t0\n");  // a driver that keeps no account
  EXPECT_EQ(source().clients(), (Clients{client(10, 1000)}));
}

TEST_F(LinuxGpuSourceTest, AHandleHeldTwiceCountsOnce) {
  putCard();
  putClient(10, 5, 1, "1000");
  putClient(10, 17, 1, "1000");
  putClient(10, 18, 2, "30");
  EXPECT_EQ(source().clients(), (Clients{client(10, 1000), client(10, 30)}));
}

TEST_F(LinuxGpuSourceTest, AClientBelongsToWhomItWasHandedTo) {
  putCard();
  putClient(500, 5, 1, "1000");   // a login service that opened the device
  putClient(2000, 8, 1, "1000");  // the compositor that draws
  EXPECT_EQ(source().clients(), (Clients{client(2000, 1000)}));
}

TEST_F(LinuxGpuSourceTest, TimesAreReadAnewEachTime) {
  putCard();
  putClient(10, 5, 1, "1000");
  auto gpu = source();
  EXPECT_EQ(gpu.clients(), (Clients{client(10, 1000)}));
  putClient(10, 5, 1, "2500");
  EXPECT_EQ(gpu.clients(), (Clients{client(10, 2500)}));
}

TEST_F(LinuxGpuSourceTest, AClosedHandleIsForgotten) {
  putCard();
  putClient(10, 5, 1, "1000");
  putClient(11, 5, 2, "7");
  auto gpu = source();
  ASSERT_EQ(gpu.clients().size(), 2u);
  putHandle(10, 5, "/tmp/file", "pos:\t0\n");
  EXPECT_EQ(gpu.clients(), (Clients{client(11, 7)}));
  EXPECT_EQ(gpu.clients(), (Clients{client(11, 7)}));
}

TEST_F(LinuxGpuSourceTest, ANumberThatIsNowAnotherClientsIsFoundAnew) {
  putCard();
  putClient(10, 5, 1, "1000");
  auto gpu = source();
  ASSERT_EQ(gpu.clients().size(), 1u);
  putClient(10, 5, 2, "3");
  Clients clients;
  for (int i = 0; i < 32 && clients.empty(); ++i) clients = gpu.clients();
  EXPECT_EQ(clients, (Clients{client(10, 3)}));
}

TEST_F(LinuxGpuSourceTest, ANewUserIsFoundWithinTwoRounds) {
  putCard();
  for (int pid = 1; pid <= 100; ++pid) tree.write(fmt::format("proc/{}/comm", pid), "idle\n");
  auto gpu = source();
  EXPECT_TRUE(gpu.clients().empty());
  putClient(60, 5, 1, "10");
  putClient(4000, 5, 2, "20");
  Clients clients;
  for (int i = 0; i < 32; ++i) clients = gpu.clients();
  EXPECT_EQ(clients, (Clients{client(60, 10), client(4000, 20)}));
}

TEST_F(LinuxGpuSourceTest, HandlesAreNotKeptWithoutLimit) {
  putCard();
  for (int pid = 1; pid <= 200; ++pid) putClient(pid, 5, pid, "1");
  auto gpu = source();
  EXPECT_EQ(gpu.clients().size(), 160u);
}

TEST_F(LinuxGpuSourceTest, NumbersThatAreNoneAreAbsent) {
  putCard();
  putClient(10, 5, 1, "18446744073709551616");
  const Clients clients = source().clients();
  ASSERT_EQ(clients.size(), 1u);
  const std::vector<std::optional<std::uint64_t>> expected(1);
  EXPECT_EQ(clients[0].accumulatedTimes, expected);
}

TEST_F(LinuxGpuSourceTest, StrangeNamesUnderProcAreNoProcesses) {
  putCard();
  tree.link("proc/self/fd/5", "/dev/dri/card0");
  tree.link("proc/99999999999/fd/5", "/dev/dri/card0");
  tree.link("proc/-4/fd/5", "/dev/dri/card0");
  tree.write("proc/7", "a file");
  tree.link("proc/8/fd/notanumber", "/dev/dri/card0");
  EXPECT_TRUE(source().clients().empty());
}

TEST_F(LinuxGpuSourceTest, WithoutAGraphicsProcessorNobodyIsLookedAt) {
  putClient(10, 5, 1, "1000");
  auto gpu = source();
  EXPECT_TRUE(gpu.clients().empty());
  EXPECT_EQ(gpu.performanceStatistics(), std::nullopt);
}

TEST_F(LinuxGpuSourceTest, TheDriversOwnFigureIsTaken) {
  struct Case {
    const char* content;
    std::optional<std::int64_t> expected;
  };
  const Case cases[] = {{"0\n", 0},
                        {"37\n", 37},
                        {"100\n", 100},
                        {"101\n", std::nullopt},
                        {"-1\n", std::nullopt},
                        {"busy\n", std::nullopt},
                        {"", std::nullopt}};
  tree.write("sys/class/drm/card1/device/gpu_busy_percent", "5\n");
  auto gpu = source();
  for (const Case& c : cases) {
    tree.write("sys/class/drm/card1/device/gpu_busy_percent", c.content);
    EXPECT_EQ(utilization(gpu), c.expected) << c.content;
  }
}

TEST_F(LinuxGpuSourceTest, ASleepingCardIsNotAsked) {
  tree.write("sys/class/drm/card0/device/gpu_busy_percent", "5\n");
  tree.write("sys/class/drm/card0/device/power/runtime_status", "suspended\n");
  auto gpu = source();
  EXPECT_EQ(utilization(gpu), std::nullopt);
  tree.write("sys/class/drm/card0/device/power/runtime_status", "active\n");
  EXPECT_EQ(utilization(gpu), 5);
}

TEST_F(LinuxGpuSourceTest, TheFirstCardThatTellsIsTheOne) {
  tree.write("sys/class/drm/card0-eDP-1/status", "connected\n");
  tree.write("sys/class/drm/card0/device/vendor", "0x10de\n");
  tree.write("sys/class/drm/card1/device/gpu_busy_percent", "11\n");
  tree.write("sys/class/drm/card2/device/gpu_busy_percent", "22\n");
  auto gpu = source();
  EXPECT_EQ(utilization(gpu), 11);
}

TEST_F(LinuxGpuSourceTest, TimeNotPoweredDownIsTheUseOtherwise) {
  for (const char* file : {"sys/class/drm/card0/gt/gt0/rc6_residency_ms",
                           "sys/class/drm/card0/device/tile0/gt0/gtidle/idle_residency_ms"}) {
    SCOPED_TRACE(file);
    tree.remove("sys");
    tree.write(file, "10000\n");
    uptime = 100;
    auto gpu = source();
    EXPECT_EQ(utilization(gpu), std::nullopt);  // nothing to compare with yet
    struct Step {
      double uptime;
      const char* residency;
      std::optional<std::int64_t> expected;
    };
    const Step steps[] = {
        {102, "11500\n", 25},           // 1.5 of 2 seconds powered down
        {104, "13500\n", 0},            // all of them
        {106, "13500\n", 100},          // none
        {108, "19999\n", 0},            // more than there was
        {110, "5\n", std::nullopt},     // began again
        {112, "2005\n", 0},             //
        {112, "2005\n", std::nullopt},  // no time has passed
        {114, "", std::nullopt},        // unreadable
        {116, "3000\n", std::nullopt},  // nothing to compare with
        {118, "4000\n", 50},
    };
    for (const Step& step : steps) {
      uptime = step.uptime;
      tree.write(file, step.residency);
      EXPECT_EQ(utilization(gpu), step.expected) << step.uptime;
    }
  }
}

TEST_F(LinuxGpuSourceTest, OfSeveralPartsTheBusiestCounts) {
  tree.write("sys/class/drm/card0/gt/gt0/rc6_residency_ms", "0\n");
  tree.write("sys/class/drm/card0/gt/gt1/rc6_residency_ms", "0\n");
  auto gpu = source();
  gpu.performanceStatistics();
  uptime = 110;
  tree.write("sys/class/drm/card0/gt/gt0/rc6_residency_ms", "3000\n");
  tree.write("sys/class/drm/card0/gt/gt1/rc6_residency_ms", "10000\n");
  EXPECT_EQ(utilization(gpu), 70);
}

}  // namespace
}  // namespace embrix
