#include "sampling/fan_reader.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "fakes/captures.h"
#include "fakes/scripted_host.h"

namespace embrix {
namespace {

using Fans = std::vector<FanReader::Fan>;

ScriptedSmcKey flt(float number) {
  ScriptedSmcKey key{.type = "flt ", .bytes = std::vector<std::uint8_t>(4)};
  std::memcpy(key.bytes.data(), &number, 4);
  return key;
}

ScriptedSmcKey ui8(std::uint8_t number) {
  return {.type = "ui8 ", .bytes = {number}};
}

class FanReaderTest : public testing::Test {
 protected:
  long calls(std::string_view call) const {
    return std::count(world.log.begin(), world.log.end(), call);
  }

  ScriptedHost world;
  Host host = world.host();
};

TEST_F(FanReaderTest, EveryFanWithItsSpeedAndItsMaximum) {
  world.smcKeys = {{"FNum", ui8(2)},    {"F0Ac", flt(1200.5F)}, {"F0Mx", flt(5777)},
                   {"F1Ac", flt(1350)}, {"F1Mx", flt(6241)},    {"F2Ac", flt(9999)}};
  FanReader reader(*host.smc);
  EXPECT_EQ(reader.read(), (Fans{{1200.5, 5777}, {1350, 6241}}));
}

TEST_F(FanReaderTest, WithoutAControllerThereAreNoFansAndNoCalls) {
  world.hasSmc = false;
  world.smcKeys = {{"FNum", ui8(1)}, {"F0Ac", flt(1200)}};
  FanReader reader(*host.smc);
  EXPECT_EQ(reader.read(), Fans{});
  EXPECT_EQ(world.log, std::vector<std::string>{"smc.isOpen"});
}

TEST_F(FanReaderTest, AFanlessMachineHasAnEmptyList) {
  world.smcKeys = {{"FNum", ui8(0)}, {"F0Ac", flt(1200)}};
  FanReader reader(*host.smc);
  EXPECT_EQ(reader.read(), Fans{});
}

TEST_F(FanReaderTest, TheNumberOfFansIsAskedOnce) {
  world.smcKeys = {{"FNum", ui8(1)}, {"F0Ac", flt(1200)}};
  FanReader reader(*host.smc);
  reader.read();
  world.smcKeys["FNum"] = ui8(2);
  world.smcKeys["F1Ac"] = flt(1300);
  EXPECT_EQ(reader.read(), (Fans{{1200, 0}}));
  EXPECT_EQ(calls("smc.call FNum 5"), 1);
}

TEST_F(FanReaderTest, AnUnreadableNumberOfFansIsNoneForGood) {
  FanReader reader(*host.smc);
  EXPECT_EQ(reader.read(), Fans{});
  world.smcKeys = {{"FNum", ui8(1)}, {"F0Ac", flt(1200)}};
  EXPECT_EQ(reader.read(), Fans{});
}

TEST_F(FanReaderTest, NumbersOfFans) {
  struct Case {
    std::string label;
    ScriptedSmcKey count;
    std::size_t fans;
  };
  const auto infinity = std::numeric_limits<float>::infinity();
  for (const auto& [label, count, fans] : {
           Case{"a fraction is cut off", flt(2.9F), 2},
           Case{"negative", flt(-1), 0},
           Case{"above every range", flt(1e30F), 0},
           Case{"infinite", flt(infinity), 0},
           Case{"no number", flt(std::numeric_limits<float>::quiet_NaN()), 0},
           Case{"two big-endian bytes", {.type = "ui16", .bytes = {0, 3}}, 3},
           Case{"an unknown type", {.type = "si32", .bytes = {0, 0, 0, 2}}, 0},
       }) {
    SCOPED_TRACE(label);
    world.smcKeys = {{"FNum", count}};
    for (int i = 0; i < 9; ++i) world.smcKeys[fmt::format("F{}Ac", i)] = flt(1000);
    FanReader reader(*host.smc);
    EXPECT_EQ(reader.read().size(), fans);
  }
}

TEST_F(FanReaderTest, AFanWhoseSpeedCannotBeReadIsLeftOut) {
  world.smcKeys = {{"FNum", ui8(2)}, {"F0Ac", flt(1200)}, {"F0Mx", flt(5777)}, {"F1Mx", flt(6241)}};
  FanReader reader(*host.smc);
  EXPECT_EQ(reader.read(), (Fans{{1200, 5777}}));
}

TEST_F(FanReaderTest, AFanBehindOneThatCannotBeReadStillCounts) {
  world.smcKeys = {{"FNum", ui8(2)}, {"F1Ac", flt(1300)}};
  FanReader reader(*host.smc);
  EXPECT_EQ(reader.read(), (Fans{{1300, 0}}));
}

TEST_F(FanReaderTest, ANegativeSpeedIsStandstill) {
  world.smcKeys = {{"FNum", ui8(1)}, {"F0Ac", flt(-12)}, {"F0Mx", flt(-1)}};
  FanReader reader(*host.smc);
  EXPECT_EQ(reader.read(), (Fans{{0, 0}}));
}

TEST_F(FanReaderTest, StandstillHasNoSign) {
  world.smcKeys = {{"FNum", ui8(1)}, {"F0Ac", flt(-0.0F)}, {"F0Mx", flt(-0.0F)}};
  FanReader reader(*host.smc);
  const Fans fans = reader.read();
  ASSERT_EQ(fans.size(), 1u);
  EXPECT_FALSE(std::signbit(fans[0].rpm));
  EXPECT_FALSE(std::signbit(fans[0].maxRPM));
}

TEST_F(FanReaderTest, ASpeedThatIsNoNumberIsUnreadable) {
  world.smcKeys = {{"FNum", ui8(1)}, {"F0Ac", flt(std::numeric_limits<float>::quiet_NaN())}};
  FanReader reader(*host.smc);
  EXPECT_EQ(reader.read(), Fans{});
}

TEST_F(FanReaderTest, ValuesByType) {
  struct Case {
    std::string label;
    ScriptedSmcKey key;
    std::optional<double> value;
  };
  for (const auto& [label, key, value] : {
           Case{"quarters", {"fpe2", {0x1A, 0xE0}}, 1720.0},
           Case{"a big-endian word", {"ui16", {0x01, 0x02}}, 258.0},
           Case{"a byte", {"ui8 ", {0xFF}}, 255.0},
           Case{"a little-endian float", {"flt ", {0xB3, 0xEB, 0xDF, 0x45}}, 7165.462402343750},
           Case{"a float that is too short", {"flt ", {0, 0, 0x80}}, std::nullopt},
           Case{"a word that is too short", {"ui16", {1}}, std::nullopt},
           Case{"quarters that are too short", {"fpe2", {1}}, std::nullopt},
           Case{"a byte that is not there", {"ui8 ", {}}, std::nullopt},
           Case{"another type", {"ioft", {0x33, 0x33, 0x13, 0, 0, 0, 0, 0}}, std::nullopt},
           Case{"another case", {"FLT ", {0, 0, 0x80, 0x3F}}, std::nullopt},
           Case{"more bytes than the record holds",
                {"ui8 ", std::vector<std::uint8_t>(200, 7)},
                7.0},
       }) {
    SCOPED_TRACE(label);
    world.smcKeys = {{"Test", key}};
    FanReader reader(*host.smc);
    EXPECT_EQ(reader.value("Test"), value);
  }
}

TEST_F(FanReaderTest, WhatAKeyIsOfIsAskedOnceUnlessThatFails) {
  FanReader reader(*host.smc);
  EXPECT_EQ(reader.value("F0Ac"), std::nullopt);
  EXPECT_EQ(reader.value("F0Ac"), std::nullopt);
  EXPECT_EQ(calls("smc.call F0Ac 9"), 2);  // a failure is asked about again
  world.smcKeys["F0Ac"] = flt(1200);
  EXPECT_EQ(reader.value("F0Ac"), 1200);
  EXPECT_EQ(reader.value("F0Ac"), 1200);
  EXPECT_EQ(calls("smc.call F0Ac 9"), 3);
  EXPECT_EQ(calls("smc.call F0Ac 5"), 2);
}

TEST_F(FanReaderTest, AFailedCallIsUnreadable) {
  world.smcKeys = {{"FNum", ui8(1)}, {"F0Ac", flt(1200)}};
  FanReader reader(*host.smc);
  EXPECT_EQ(reader.read().size(), 1u);
  world.failing.insert("smc.call");
  EXPECT_EQ(reader.read(), Fans{});
  world.failing.clear();
  EXPECT_EQ(reader.read().size(), 1u);
}

TEST_F(FanReaderTest, OnlyTheFirstFourBytesOfAKeyCount) {
  world.smcKeys = {{"F10A", flt(1000)}};
  FanReader reader(*host.smc);
  EXPECT_EQ(reader.value("F10Ac"), 1000);
}

// A controller that answers with what its type would never have.
struct LyingSmc final : SmcSource {
  bool isOpen() override { return true; }
  bool call(const SmcPacketBytes& input, SmcPacketBytes& output) override {
    const Packet question = Packet::decode(input);
    asked.push_back(question);
    Packet answer;
    if (question.command == kSmcReadKeyInfo) {
      answer.dataSize = 0xFFFFFFFF;
      answer.dataType = fourCC("flt ");
    } else {
      answer.bytes.fill(0x40);
    }
    output = answer.encode();
    return true;
  }
  std::vector<Packet> asked;
};

TEST_F(FanReaderTest, ASizeBeyondTheRecordReadsNoFurtherThanTheRecord) {
  LyingSmc smc;
  FanReader reader(smc);
  EXPECT_FLOAT_EQ(static_cast<float>(reader.value("F0Ac").value()), 3.0039215F);  // 0x40404040
  ASSERT_EQ(smc.asked.size(), 2u);
  EXPECT_EQ(smc.asked[0], (Packet{.key = fourCC("F0Ac"), .command = kSmcReadKeyInfo}));
  EXPECT_EQ(smc.asked[1],
            (Packet{.key = fourCC("F0Ac"), .dataSize = 0xFFFFFFFF, .command = kSmcReadValue}));
}

// Bytes in hexadecimal, as in "F0Ac  [flt ]  4128 (bytes 00 40 81 45)".
ScriptedSmcKey keyOf(std::string_view line) {
  ScriptedSmcKey key{.type = std::string(line.substr(line.find('[') + 1, 4)), .bytes = {}};
  std::string_view bytes = line.substr(line.find("(bytes") + 6);
  while (bytes.starts_with(' ')) {
    key.bytes.push_back(
        static_cast<std::uint8_t>(std::stoul(std::string(bytes.substr(1, 2)), nullptr, 16)));
    bytes.remove_prefix(3);
  }
  return key;
}

// What real controllers answered for the speed of their first fan. The bytes are what counts:
// 0x45814000 is 4136, and the figure printed before it is of another moment.
TEST_F(FanReaderTest, SpeedsOfRealFans) {
  const std::string capture = captureOr("04_sensors_smc/smc_fan_lines_apple_silicon.txt",
                                        "  F0Ac  [flt ]  4128 (bytes 00 40 81 45)\n"
                                        "  F0Ac  [flt ]  7165 (bytes b3 eb df 45)\n"
                                        "  F0Ac  [flt ]  (bytes d0 f4 9c 44)\n"
                                        "  F0Ac  [flt ]  (bytes f5 b6 07 45)\n"
                                        "  TC0P  [    ]  no data\n");
  std::string_view text = capture;
  std::vector<double> speeds;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    if (line.find("F0Ac") == std::string_view::npos) continue;
    world.smcKeys = {{"FNum", ui8(1)}, {"F0Ac", keyOf(line)}};
    FanReader reader(*host.smc);
    speeds.push_back(reader.read().at(0).rpm);
  }
  ASSERT_EQ(speeds.size(), 4u);
  EXPECT_EQ(speeds[0], 4136);
  EXPECT_NEAR(speeds[1], 7165.46, 0.01);
  EXPECT_NEAR(speeds[2], 1255.65, 0.01);
  EXPECT_NEAR(speeds[3], 2171.43, 0.01);
}

}  // namespace
}  // namespace embrix
