#include "darwin/kinfo_proc_table.h"

#include <gtest/gtest.h>

#include <limits>

#include "kernel_bytes.h"

namespace embrix {
namespace {

// One record, written at the numbers that a debugger shows for a 64-bit kernel.
ByteVector kinfoProc(std::int32_t pid, std::int32_t ppid, std::uint32_t uid, std::int64_t start,
                     std::string_view command) {
  ByteVector record(648);
  put(record, 0, start);
  put(record, 8, std::int32_t{999'999});  // microseconds of the start
  put(record, 40, pid);
  putText(record, 243, command);
  put(record, 392, std::uint32_t{4242});  // real user: not the one that counts
  put(record, 420, uid);
  put(record, 560, ppid);
  return record;
}

ByteVector operator+(ByteVector front, const ByteVector& back) {
  front.insert(front.end(), back.begin(), back.end());
  return front;
}

std::vector<RawProcess> decoded(const ByteVector& bytes) {
  std::vector<RawProcess> table;
  decodeProcessTable(bytes, table);
  return table;
}

RawProcess process(std::int32_t pid, std::int32_t ppid, std::uint32_t uid, std::uint64_t start,
                   std::string_view command) {
  return {.pid = pid,
          .ppid = ppid,
          .uid = uid,
          .startTime = start,
          .commandName = std::string(command),
          .usage = std::nullopt};
}

TEST(KinfoProcTableTest, RecordsComeInTheKernelsOrder) {
  const auto table = decoded(kinfoProc(412, 1, 501, 1'750'000'000, "zsh") +
                             kinfoProc(1, 0, 0, 1'749'000'000, "launchd"));
  EXPECT_EQ(table, (std::vector{process(412, 1, 501, 1'750'000'000, "zsh"),
                                process(1, 0, 0, 1'749'000'000, "launchd")}));
}

TEST(KinfoProcTableTest, NoBytesAreAnEmptyTable) {
  EXPECT_TRUE(decoded({}).empty());
}

TEST(KinfoProcTableTest, ATrailingPartOfARecordIsIgnored) {
  const ByteVector two = kinfoProc(7, 1, 501, 10, "a") + kinfoProc(8, 7, 501, 11, "b");
  for (std::size_t size = 0; size <= two.size(); ++size) {
    const auto table = decoded(ByteVector(two.begin(), two.begin() + static_cast<long>(size)));
    ASSERT_EQ(table.size(), size / 648) << size;
    if (table.empty()) continue;
    EXPECT_EQ(table[0], process(7, 1, 501, 10, "a"));
  }
}

TEST(KinfoProcTableTest, AShortNameHasAtMostSixteenBytes) {
  EXPECT_EQ(decoded(kinfoProc(7, 1, 501, 10, "0123456789abcdef"))[0].commandName,
            "0123456789abcdef");
  EXPECT_EQ(decoded(kinfoProc(7, 1, 501, 10, "0123456789abcdefg"))[0].commandName,
            "0123456789abcdef");
}

TEST(KinfoProcTableTest, AShortNameKeepsItsBytesAsTheyAre) {
  EXPECT_EQ(decoded(kinfoProc(7, 1, 501, 10, "\xff\x1b[2J\xc3"))[0].commandName, "\xff\x1b[2J\xc3");
  EXPECT_EQ(decoded(kinfoProc(7, 1, 501, 10, ""))[0].commandName, "");
}

TEST(KinfoProcTableTest, NumbersReachTheirEnds) {
  const auto table = decoded(kinfoProc(-1, std::numeric_limits<std::int32_t>::min(),
                                       std::numeric_limits<std::uint32_t>::max(),
                                       std::numeric_limits<std::int64_t>::max(), "x"));
  EXPECT_EQ(table[0], process(-1, std::numeric_limits<std::int32_t>::min(), 0xffffffff,
                              0x7fffffffffffffff, "x"));
}

TEST(KinfoProcTableTest, AStartBefore1970CountsAsZero) {
  EXPECT_EQ(decoded(kinfoProc(7, 1, 501, -1, "x"))[0].startTime, 0u);
}

TEST(KinfoProcTableTest, WhatTheTableHeldBeforeIsGone) {
  std::vector<RawProcess> table(3, process(99, 98, 97, 96, "a name of the tick before this one"));
  table[0].usage = RawUsage{.userTime = 1};
  decodeProcessTable(kinfoProc(7, 1, 501, 10, "zsh"), table);
  EXPECT_EQ(table, std::vector{process(7, 1, 501, 10, "zsh")});
}

TEST(KinfoProcTableTest, StorageIsUsedAgain) {
  std::vector<RawProcess> table;
  decodeProcessTable(kinfoProc(7, 1, 501, 10, "0123456789abcdef"), table);
  const RawProcess* const place = table.data();
  const char* const characters = table[0].commandName.data();
  decodeProcessTable(kinfoProc(8, 1, 501, 11, "fedcba9876543210"), table);
  EXPECT_EQ(table.data(), place);
  EXPECT_EQ(table[0].commandName.data(), characters);
}

TEST(KinfoProcTableTest, AnyBytesGiveARecordForEachWholeSize) {
  for (std::uint32_t seed = 0; seed < 50; ++seed) {
    const auto table = decoded(randomBytes(648 * 3 + 17, seed));
    ASSERT_EQ(table.size(), 3u);
    for (const RawProcess& process : table) EXPECT_LE(process.commandName.size(), 16u);
  }
}

}  // namespace
}  // namespace embrix
