#include "hosts/linux/smc_source.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "captured_tree.h"
#include "darwin/smc_packet.h"
#include "sampling/fan_reader.h"

namespace embrix {
namespace {

using Fans = std::vector<Fan>;

class LinuxSmcSourceTest : public testing::Test {
 protected:
  void putFan(const std::string& monitor, int number, const std::string& rpm,
              const std::string& maximum = "") {
    const std::string stem = "sys/class/hwmon/" + monitor + "/fan" + std::to_string(number);
    tree.write(stem + "_input", rpm);
    if (!maximum.empty()) tree.write(stem + "_max", maximum);
  }
  Fans fans() {
    LinuxSmcSource source(tree.root());
    return FanReader(source).read();
  }

  CapturedTree tree;
};

TEST_F(LinuxSmcSourceTest, FansAreReadAsTheControllersAre) {
  putFan("hwmon3", 1, "2150\n", "6300\n");
  putFan("hwmon3", 2, "0\n");
  putFan("hwmon12", 1, "980\n", "0\n");
  EXPECT_EQ(fans(), (Fans{{2150, 6300}, {0, 0}, {980, 0}}));
}

TEST_F(LinuxSmcSourceTest, AFanWithoutACountIsLeftOut) {
  struct Case {
    const char* label;
    const char* content;
  };
  const Case cases[] = {
      {"empty", ""},
      {"text", "N/A\n"},
      {"negative", "-1\n"},
      {"all bits of a controller that has no count", "65535\n"},
      {"beyond 64 bits", "18446744073709551616\n"},
  };
  for (const Case& c : cases) {
    tree.remove("sys");
    putFan("hwmon0", 1, c.content, "5000\n");
    putFan("hwmon0", 2, "1200\n", c.content);
    EXPECT_EQ(fans(), (Fans{{1200, 0}})) << c.label;
  }
}

TEST_F(LinuxSmcSourceTest, AFanOnASleepingCardIsNotAsked) {
  putFan("hwmon4", 1, "1500\n");
  tree.write("sys/class/hwmon/hwmon4/device/power/runtime_status", "suspended\n");
  LinuxSmcSource source(tree.root());
  FanReader reader(source);
  EXPECT_TRUE(reader.read().empty());
  tree.write("sys/class/hwmon/hwmon4/device/power/runtime_status", "active\n");
  EXPECT_EQ(reader.read(), (Fans{{1500, 0}}));
}

TEST_F(LinuxSmcSourceTest, KeysHaveRoomForTenFans) {
  for (int i = 1; i <= 12; ++i) putFan("hwmon0", i, std::to_string(100 * i));
  const Fans all = fans();
  ASSERT_EQ(all.size(), 10u);
  EXPECT_EQ(all.back().rpm, 1000);
}

TEST_F(LinuxSmcSourceTest, OtherKeysAndCommandsAreRefused) {
  putFan("hwmon0", 1, "1000\n");
  LinuxSmcSource source(tree.root());
  SmcPacketBytes output{};
  for (const char* key :
       {"F1Ac", "F9Ac", "F0Mx", "F0Tg", "FxAc", "TC0P", "G0Ac", "", "\xff\xff\xff\xff"}) {
    for (const std::uint8_t command : {kSmcReadValue, kSmcReadKeyInfo}) {
      ASSERT_TRUE(source.call(Packet{.key = fourCC(key), .command = command}.encode(), output));
      EXPECT_NE(Packet::decode(output).result, 0) << key;
    }
  }
  for (const int number : {0, 6, 8, 255}) {
    const auto command = static_cast<std::uint8_t>(number);
    EXPECT_FALSE(source.call(Packet{.key = fourCC("FNum"), .command = command}.encode(), output));
  }
}

TEST_F(LinuxSmcSourceTest, AMachineWithoutFansHasNoController) {
  tree.write("sys/class/hwmon/hwmon0/temp1_input", "40000\n");
  LinuxSmcSource source(tree.root());
  EXPECT_FALSE(source.isOpen());
  SmcPacketBytes output{};
  EXPECT_FALSE(
      source.call(Packet{.key = fourCC("FNum"), .command = kSmcReadValue}.encode(), output));
  EXPECT_TRUE(fans().empty());
}

}  // namespace
}  // namespace embrix
