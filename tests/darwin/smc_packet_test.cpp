#include "darwin/smc_packet.h"

#include <gtest/gtest.h>

#include <limits>

#include "kernel_bytes.h"

namespace embrix {
namespace {

TEST(SmcPacketTest, AnEmptyPacketIsEightyZeros) {
  EXPECT_EQ(Packet{}.encode(), SmcPacketBytes{});
}

TEST(SmcPacketTest, EachFieldHasItsPlace) {
  Packet packet{.key = 0x01020304,
                .dataSize = 0x05060708,
                .dataType = 0x090a0b0c,
                .result = 0x0d,
                .command = 0x0e};
  packet.bytes.front() = 0x0f;
  packet.bytes.back() = 0x10;
  SmcPacketBytes expected{};
  const std::pair<std::size_t, std::uint8_t> places[] = {
      {0, 4},    {1, 3},    {2, 2},    {3, 1},  {28, 8},   {29, 7},   {30, 6},   {31, 5},
      {32, 0xc}, {33, 0xb}, {34, 0xa}, {35, 9}, {40, 0xd}, {42, 0xe}, {48, 0xf}, {79, 0x10}};
  for (const auto& [place, byte] : places) expected[place] = byte;
  EXPECT_EQ(packet.encode(), expected);
  EXPECT_EQ(Packet::decode(expected), packet);
}

TEST(SmcPacketTest, WhatIsNotAFieldIsNotLookedAt) {
  SmcPacketBytes record;
  record.fill(0xff);
  const Packet packet = Packet::decode(record);
  EXPECT_EQ(packet.key, 0xffffffff);
  EXPECT_EQ(packet.result, 0xff);
  SmcPacketBytes again = packet.encode();
  for (const std::size_t place : {4u, 11u, 12u, 27u, 36u, 39u, 41u, 43u, 44u, 47u}) {
    EXPECT_EQ(again[place], 0) << place;
  }
}

TEST(SmcPacketTest, AnyRecordGoesThroughDecodingAndBack) {
  for (std::uint32_t seed = 0; seed < 100; ++seed) {
    SmcPacketBytes record;
    const auto bytes = randomBytes(record.size(), seed);
    std::copy(bytes.begin(), bytes.end(), record.begin());
    const Packet packet = Packet::decode(record);
    EXPECT_EQ(Packet::decode(packet.encode()), packet);
  }
}

TEST(SmcPacketTest, AValueEndsWithItsField) {
  Packet packet;
  packet.bytes.fill(7);
  EXPECT_EQ(packet.value(0).size(), 0u);
  EXPECT_EQ(packet.value(4).size(), 4u);
  EXPECT_EQ(packet.value(32).size(), 32u);
  EXPECT_EQ(packet.value(33).size(), 32u);
  EXPECT_EQ(packet.value(std::numeric_limits<std::uint32_t>::max()).size(), 32u);
}

TEST(FourCCTest, TheFirstByteIsHighest) {
  EXPECT_EQ(fourCC("FNum"), 0x464e756du);
  EXPECT_EQ(fourCC("flt "), 0x666c7420u);
}

TEST(FourCCTest, FewerBytesGiveFewerShifts) {
  EXPECT_EQ(fourCC(""), 0u);
  EXPECT_EQ(fourCC("A"), 0x41u);
  EXPECT_EQ(fourCC("AB"), 0x4142u);
}

TEST(FourCCTest, BytesAfterTheFourthDoNotCount) {
  EXPECT_EQ(fourCC("FNumber"), fourCC("FNum"));
}

TEST(FourCCTest, BytesOfOtherCharactersAreUnsigned) {
  EXPECT_EQ(fourCC("\xff\xfe\x80\x81"), 0xfffe8081u);
}

struct ValueCase {
  const char* type;
  ByteVector bytes;
  std::optional<double> value;
};

TEST(SmcValueTest, EachTypeHasItsForm) {
  const ValueCase cases[] = {
      {"flt ", {0x00, 0x00, 0xc8, 0x44}, 1600.0},
      {"flt ", {0x00, 0x00, 0x80, 0xbf}, -1.0},
      {"flt ", {0x00, 0x00, 0x80, 0x3f, 0xff}, 1.0},
      {"ui8 ", {0x02}, 2.0},
      {"ui8 ", {0xff, 0x00}, 255.0},
      {"ui16", {0x01, 0x02}, 258.0},
      {"ui16", {0xff, 0xff, 0xff}, 65535.0},
      {"fpe2", {0x1a, 0xe0}, 1720.0},
      {"fpe2", {0x00, 0x01}, 0.25},
      {"fpe2", {0xff, 0xff}, 16383.75},
  };
  for (const auto& [type, bytes, value] : cases) EXPECT_EQ(smcValue(fourCC(type), bytes), value);
}

TEST(SmcValueTest, TooFewBytesAreAbsent) {
  const std::pair<const char*, std::size_t> needs[] = {
      {"flt ", 4}, {"ui8 ", 1}, {"ui16", 2}, {"fpe2", 2}};
  for (const auto& [type, need] : needs) {
    for (std::size_t size = 0; size < need; ++size) {
      EXPECT_EQ(smcValue(fourCC(type), ByteVector(size, 0)), std::nullopt) << type << size;
    }
    EXPECT_EQ(smcValue(fourCC(type), ByteVector(need, 0)), 0.0) << type;
  }
}

TEST(SmcValueTest, AnyOtherTypeIsAbsent) {
  for (const char* type : {"ui32", "si32", "ioft", "flt", "FLT ", "ch8*", "hex_", "flag", ""}) {
    EXPECT_EQ(smcValue(fourCC(type), ByteVector(32, 1)), std::nullopt) << type;
  }
}

TEST(SmcValueTest, AFloatThatIsNoNumberIsAbsent) {
  EXPECT_EQ(smcValue(fourCC("flt "), ByteVector{0x00, 0x00, 0xc0, 0x7f}), std::nullopt);
  EXPECT_EQ(smcValue(fourCC("flt "), ByteVector{0x00, 0x00, 0x80, 0x7f}), std::nullopt);
  EXPECT_EQ(smcValue(fourCC("flt "), ByteVector{0x00, 0x00, 0x80, 0xff}), std::nullopt);
}

}  // namespace
}  // namespace embrix
