#include "running/forgotten_row.h"

#include <cstdint>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

namespace embrix {
namespace {

TEST(ForgottenRowTest, MemoryThatDoesNotFitStaysTheLargest) {
  constexpr std::uint64_t kMegabyte = 1 << 20;
  ForgottenRow row;
  EXPECT_EQ(row.memoryBytes(), 0u);
  row.processes.resize(2);
  for (ProcessRow& process : row.processes) process.memoryBytes = kMegabyte;
  EXPECT_EQ(row.memoryBytes(), 2 * kMegabyte);
  EXPECT_EQ(ForgottenRow::memoryBytes(std::vector<ForgottenRow>{row, row}), 4 * kMegabyte);
  row.processes[0].memoryBytes = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(row.memoryBytes(), std::numeric_limits<std::uint64_t>::max());
  EXPECT_EQ(ForgottenRow::memoryBytes(std::vector<ForgottenRow>{row, row}),
            std::numeric_limits<std::uint64_t>::max());
}

}  // namespace
}  // namespace embrix
