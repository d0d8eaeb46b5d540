#include "sampling/system_stats_reader.h"

#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "fakes/captures.h"
#include "fakes/scripted_host.h"
#include "ioreg_text.h"

namespace embrix {
namespace {

constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();

class SystemStatsReaderTest : public testing::Test {
 protected:
  SystemStatsReaderTest() {
    world.pageSize = 16384;
    world.physicalBytes = 16ULL << 30;
  }

  std::optional<std::uint64_t> usedPages(MemoryCounters counters) {
    world.memoryCounters = counters;
    const auto reading = reader.memory();
    return reading ? std::optional(reading->usedBytes / world.pageSize) : std::nullopt;
  }

  ScriptedHost world;
  Host host = world.host();
  SystemStatsReader reader{*host.gpu, *host.memory};
};

TEST_F(SystemStatsReaderTest, UtilisationIsAHundredthOfThePercentage) {
  struct Case {
    std::string label;
    Property percent;
    std::optional<double> expected;
  };
  for (const auto& [label, percent, expected] : {
           Case{"whole", 25, 0.25},
           Case{"fractional", 12.5, 0.125},
           Case{"idle is measured", 0, 0.0},
           Case{"not cut off at 1", 130, 1.3},
           Case{"negative", -1, std::nullopt},
           Case{"far above", std::numeric_limits<std::int64_t>::max(), std::nullopt},
           Case{"no number", std::nan(""), std::nullopt},
           Case{"infinite", std::numeric_limits<double>::infinity(), std::nullopt},
           Case{"text", "25", std::nullopt},
           Case{"a flag", true, std::nullopt},
           Case{"nothing", Property{}, std::nullopt},
       }) {
    world.gpuStatistics = PropertyMap{{"Device Utilization %", percent}};
    EXPECT_EQ(reader.gpuUtilization(), expected) << label;
  }
}

TEST_F(SystemStatsReaderTest, WithoutAProcessorOrItsFigureThereIsNoUtilisation) {
  EXPECT_EQ(reader.gpuUtilization(), std::nullopt);
  world.gpuStatistics = PropertyMap{{"Renderer Utilization %", 25}};
  EXPECT_EQ(reader.gpuUtilization(), std::nullopt);
}

TEST_F(SystemStatsReaderTest, UsedMemoryIsAppWiredAndCompressed) {
  EXPECT_EQ(
      usedPages(
          {.internalPages = 100, .purgeablePages = 30, .wiredPages = 20, .compressorPages = 10}),
      100u);
}

TEST_F(SystemStatsReaderTest, MorePurgeableThanInternalPagesCountAsNoneNotAsNegative) {
  EXPECT_EQ(
      usedPages(
          {.internalPages = 100, .purgeablePages = 130, .wiredPages = 20, .compressorPages = 10}),
      30u);
}

TEST_F(SystemStatsReaderTest, BytesAreOfThePageSizeAndTheMachine) {
  world.memoryCounters = MemoryCounters{.internalPages = 3};
  const auto reading = reader.memory().value();
  EXPECT_EQ(reading.usedBytes, 3u * 16384u);
  EXPECT_EQ(reading.totalBytes, 16ULL << 30);
}

TEST_F(SystemStatsReaderTest, UnreadableCountersGiveNoReading) {
  world.memoryFreeLevel = 50;
  EXPECT_EQ(reader.memory(), std::nullopt);
}

TEST_F(SystemStatsReaderTest, CountersThatPass64BitsGiveNoReading) {
  EXPECT_EQ(usedPages({.internalPages = kMost, .wiredPages = 1}), std::nullopt);
  EXPECT_EQ(usedPages({.wiredPages = kMost, .compressorPages = kMost}), std::nullopt);
  EXPECT_EQ(usedPages({.internalPages = kMost / 16384 + 1}), std::nullopt);
  EXPECT_EQ(usedPages({.internalPages = kMost / 16384}), kMost / 16384);
}

TEST_F(SystemStatsReaderTest, AMachineOfNoMemoryGivesNoReading) {
  world.memoryCounters = MemoryCounters{.internalPages = 3};
  world.physicalBytes = 0;
  EXPECT_EQ(reader.memory(), std::nullopt);
}

TEST_F(SystemStatsReaderTest, PressureIsWhatIsNotFree) {
  struct Case {
    std::string label;
    std::optional<std::int32_t> level;
    double pressure;
  };
  world.memoryCounters = MemoryCounters{};
  for (const auto& [label, level, pressure] : {
           Case{"most is free", 83, 0.17},
           Case{"all is free", 100, 0},
           Case{"nothing is free", 0, 1},
           Case{"above 100", 101, 0},
           Case{"below 0", -1, 1},
           Case{"far above", std::numeric_limits<std::int32_t>::max(), 0},
           Case{"far below", std::numeric_limits<std::int32_t>::min(), 1},
           Case{"unreadable", std::nullopt, 0},
       }) {
    world.memoryFreeLevel = level;
    EXPECT_DOUBLE_EQ(reader.memory().value().pressure, pressure) << label;
  }
}

// Accelerators as the registry prints them.
TEST_F(SystemStatsReaderTest, UtilisationOfRealProcessors) {
  struct Case {
    std::string capture;
    std::string handMade;
    double expected;
  };
  for (
      const auto& [capture, handMade, expected] : {
          Case{"05_gpu/m1max_performancestatistics.txt",
               R"(      "vendor-id" = <6b100000>
      "PerformanceStatistics" = {"Tiler Utilization %"=25,"Renderer Utilization %"=23,"Device Utilization %"=25,"In use system memory"=745570304})",
               0.25},
          Case{
              "05_gpu/m2_performancestatistics.txt",
              R"(      "PerformanceStatistics" = {"Alloc system memory"=2930081792,"Device Utilization %"=54})",
              0.54},
      }) {
    const auto properties = ioregProperties(captureOr(capture, handMade));
    world.gpuStatistics = *mapAt(properties, "PerformanceStatistics");
    EXPECT_EQ(reader.gpuUtilization(), expected) << capture;
  }
}

// The number of pages behind a label such as "Pages purgeable:".
std::uint64_t pages(std::string_view text, std::string_view label) {
  const auto place = text.find(label);
  if (place == std::string_view::npos) return 0;
  return std::stoull(std::string(text.substr(place + label.size(), 40)));
}

// 247311 anonymous pages less 630 purgeable, 159117 wired and 454496 of the compressor: 860294
// pages of 16384 bytes, which is 14.1 GB of 17.2. The system calls 38 % free.
TEST_F(SystemStatsReaderTest, MemoryOfARealMachine) {
  const std::string text = captureOr("10_misc/m1pro_16GB_macos15.7.5_vm_stat_memory_pressure.txt",
                                     "Pages wired down:                        159117.\n"
                                     "Pages purgeable:                            630.\n"
                                     "Anonymous pages:                         247311.\n"
                                     "Pages occupied by compressor:            454496.\n"
                                     "System-wide memory free percentage: 38%\n");
  world.memoryCounters = MemoryCounters{.internalPages = pages(text, "Anonymous pages:"),
                                        .purgeablePages = pages(text, "Pages purgeable:"),
                                        .wiredPages = pages(text, "Pages wired down:"),
                                        .compressorPages = pages(text, "occupied by compressor:")};
  world.memoryFreeLevel = static_cast<std::int32_t>(pages(text, "free percentage:"));
  const auto reading = reader.memory().value();
  EXPECT_EQ(reading.usedBytes, 860294ULL * 16384);
  EXPECT_DOUBLE_EQ(reading.pressure, 0.62);
}

}  // namespace
}  // namespace embrix
