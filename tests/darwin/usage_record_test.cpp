#include "darwin/usage_record.h"

#include <gtest/gtest.h>

#include <limits>

#include "kernel_bytes.h"

namespace embrix {
namespace {

constexpr std::size_t kSize = 464;

// Every 64-bit field holds its own place, so that a field read from the wrong one is seen.
ByteVector numberedRecord() {
  ByteVector record(kSize);
  for (std::size_t offset = 0; offset < kSize; offset += 8) put(record, offset, offset);
  return record;
}

TEST(UsageRecordTest, EachCounterHasItsPlace) {
  EXPECT_EQ(decodeUsage(numberedRecord()), (RawUsage{.userTime = 16,
                                                     .systemTime = 24,
                                                     .packageIdleWakeups = 32,
                                                     .interruptWakeups = 40,
                                                     .footprint = 72,
                                                     .energyNJ = 336}));
}

TEST(UsageRecordTest, ZeroEnergyIsEnergyOfZero) {
  EXPECT_EQ(decodeUsage(ByteVector(kSize)), RawUsage{.energyNJ = 0});
}

TEST(UsageRecordTest, CountersReachTheirEnd) {
  const auto usage = decodeUsage(ByteVector(kSize, 0xff));
  EXPECT_EQ(usage->energyNJ, std::numeric_limits<std::uint64_t>::max());
  EXPECT_EQ(usage->userTime, std::numeric_limits<std::uint64_t>::max());
}

TEST(UsageRecordTest, ARecordOfAnotherSizeIsNone) {
  ByteVector record = numberedRecord();
  for (std::size_t size = 0; size < kSize; ++size) {
    EXPECT_EQ(decodeUsage(Bytes(record).first(size)), std::nullopt) << size;
  }
  record.push_back(0);
  EXPECT_EQ(decodeUsage(record), std::nullopt);
}

}  // namespace
}  // namespace embrix
