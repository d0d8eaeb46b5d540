#include "hosts/linux/memory_source.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "captured_tree.h"

namespace embrix {
namespace {

constexpr std::uint64_t kKB = 1024;

constexpr const char* kMeminfo =
    "MemTotal:       16000000 kB\n"
    "MemFree:         1000000 kB\n"
    "MemAvailable:    6000000 kB\n"
    "Cached:          5000000 kB\n"
    "SUnreclaim:       300000 kB\n"
    "KernelStack:       20000 kB\n"
    "PageTables:        80000 kB\n"
    "Zswap:            400000 kB\n"
    "HugePages_Total:       0\n"
    "Hugepagesize:       2048 kB\n";

TEST(MeminfoTest, EveryTextHasItsRecordOrNone) {
  struct Case {
    const char* label;
    std::string text;
    std::optional<MeminfoRecord> expected;
  };
  const Case cases[] = {
      {"as the kernel writes it", kMeminfo,
       MeminfoRecord{16000000 * kKB, 6000000 * kKB, 400000 * kKB, 400000 * kKB}},
      {"the two that matter alone", "MemTotal: 10 kB\nMemAvailable: 4 kB\n",
       MeminfoRecord{10 * kKB, 4 * kKB, 0, 0}},
      {"without its last line end", "MemTotal: 10 kB\nMemAvailable: 4 kB",
       MeminfoRecord{10 * kKB, 4 * kKB, 0, 0}},
      {"more available than there is", "MemTotal: 10 kB\nMemAvailable: 40 kB\n",
       MeminfoRecord{10 * kKB, 10 * kKB, 0, 0}},
      {"empty", "", std::nullopt},
      {"no total", "MemAvailable: 4 kB\n", std::nullopt},
      {"no available, as before Linux 3.14", "MemTotal: 10 kB\nMemFree: 3 kB\n", std::nullopt},
      {"a total of nothing", "MemTotal: 0 kB\nMemAvailable: 0 kB\n", std::nullopt},
      {"another unit", "MemTotal: 10 MB\nMemAvailable: 4 kB\n", std::nullopt},
      {"text", "MemTotal: much kB\nMemAvailable: 4 kB\n", std::nullopt},
      {"a negative one", "MemTotal: -10 kB\nMemAvailable: 4 kB\n", std::nullopt},
      {"beyond 64 bits of bytes", "MemTotal: 9223372036854775807 kB\nMemAvailable: 4 kB\n",
       std::nullopt},
      {"beyond 64 bits", "MemTotal: 10 kB\nMemAvailable: 99999999999999999999 kB\n", std::nullopt},
      {"nonsense in the lesser ones",
       "MemTotal: 10 kB\nMemAvailable: 4 kB\nZswap: x\nPageTables: -1 kB\n",
       MeminfoRecord{10 * kKB, 4 * kKB, 0, 0}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(parseMeminfo(c.text), c.expected) << c.label;
  }
}

TEST(MeminfoTest, EveryTruncationIsSurvived) {
  const std::string whole = kMeminfo;
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const auto record = parseMeminfo(whole.substr(0, size));
    if (record) {
      EXPECT_EQ(record->total, 16000000 * kKB);
      EXPECT_EQ(record->available, 6000000 * kKB);
    }
  }
}

TEST(PressureTest, EveryTextHasItsPercentageOrNone) {
  struct Case {
    std::string text;
    std::optional<double> expected;
  };
  const Case cases[] = {
      {"some avg10=0.00 avg60=0.00 avg300=0.00 total=0\nfull avg10=9.00\n", 0.0},
      {"some avg10=12.34 avg60=0.00 avg300=0.00 total=0\n", 12.34},
      {"some avg10=100.00 avg60=1.00\n", 100.0},
      {"some avg10=7", 7.0},
      {"some avg10=100.01 avg60=1.00\n", std::nullopt},
      {"some avg10=-1.00 avg60=1.00\n", std::nullopt},
      {"some avg10=nan avg60=1.00\n", std::nullopt},
      {"some avg10=inf\n", std::nullopt},
      {"some avg10= avg60=1.00\n", std::nullopt},
      {"full avg10=3.00\n", std::nullopt},
      {"", std::nullopt},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(parsePressure(c.text), c.expected) << c.text;
  }
}

class LinuxMemorySourceTest : public testing::Test {
 protected:
  void putMeminfo(const std::string& text) { tree.write("proc/meminfo", text); }
  void putPressure(const std::string& text) { tree.write("proc/pressure/memory", text); }

  CapturedTree tree;
};

TEST_F(LinuxMemorySourceTest, ThePartsAreWhatIsNotAvailable) {
  putMeminfo(kMeminfo);
  LinuxMemorySource source(tree.root());
  const std::uint64_t page = source.pageSize();
  EXPECT_EQ(page, static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE)));
  EXPECT_EQ(source.physicalBytes(), 16000000 * kKB);
  const auto counters = source.counters();
  ASSERT_TRUE(counters);
  EXPECT_EQ(counters->wiredPages, 400000 * kKB / page);
  EXPECT_EQ(counters->compressorPages, 400000 * kKB / page);
  EXPECT_EQ(counters->purgeablePages, 0u);
  EXPECT_EQ(counters->internalPages + counters->wiredPages + counters->compressorPages,
            10000000 * kKB / page);
}

TEST_F(LinuxMemorySourceTest, PartsLargerThanTheWholeAreCut) {
  putMeminfo("MemTotal: 16000 kB\nMemAvailable: 12000 kB\nSUnreclaim: 3000 kB\nZswap: 8000 kB\n");
  LinuxMemorySource source(tree.root());
  const auto counters = source.counters();
  ASSERT_TRUE(counters);
  EXPECT_EQ(counters->internalPages, 0u);
  EXPECT_EQ((counters->wiredPages + counters->compressorPages) * source.pageSize(), 4000 * kKB);
}

TEST_F(LinuxMemorySourceTest, TheFreeLevelIsWhatIsAvailableLessWhatStalls) {
  struct Case {
    const char* label;
    const char* pressure;
    std::int32_t expected;
  };
  const Case cases[] = {
      {"no stall", "some avg10=0.00 avg60=0.00 avg300=0.00 total=1\n", 37},
      {"a slight stall", "some avg10=5.20 avg60=0.00 avg300=0.00 total=1\n", 37},
      {"a heavy stall", "some avg10=80.20 avg60=0.00 avg300=0.00 total=1\n", 19},
      {"nothing but stall", "some avg10=100.00 avg60=0.00 avg300=0.00 total=1\n", 0},
      {"unreadable", "", 37},
  };
  putMeminfo(kMeminfo);
  for (const Case& c : cases) {
    putPressure(c.pressure);
    EXPECT_EQ(LinuxMemorySource(tree.root()).freeLevel(), c.expected) << c.label;
  }
}

TEST_F(LinuxMemorySourceTest, TheLevelIsOfTheSameReadingAsTheCounters) {
  putMeminfo("MemTotal: 1000 kB\nMemAvailable: 500 kB\n");
  LinuxMemorySource source(tree.root());
  ASSERT_TRUE(source.counters());
  putMeminfo("MemTotal: 1000 kB\nMemAvailable: 100 kB\n");
  EXPECT_EQ(source.freeLevel(), 50);
  EXPECT_EQ(source.freeLevel(), 10);
}

TEST_F(LinuxMemorySourceTest, AMachineThatTellsNothingHasNoCounters) {
  LinuxMemorySource source(tree.root());
  EXPECT_EQ(source.physicalBytes(), 0u);
  EXPECT_EQ(source.counters(), std::nullopt);
  EXPECT_EQ(source.freeLevel(), std::nullopt);
}

}  // namespace
}  // namespace embrix
