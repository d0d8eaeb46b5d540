#include "darwin/working_directory.h"

#include <gtest/gtest.h>

#include "kernel_bytes.h"

namespace embrix {
namespace {

constexpr std::size_t kSize = 2352;
constexpr std::size_t kCurrent = 152;      // where the current directory's path lies
constexpr std::size_t kRoot = 152 + 1176;  // where the root directory's path lies

ByteVector recordIn(std::string_view directory) {
  ByteVector record(kSize);
  putText(record, kCurrent, directory);
  putText(record, kRoot, "/private/jail");
  return record;
}

TEST(WorkingDirectoryTest, IsTheCurrentDirectoryAndNotTheRoot) {
  EXPECT_EQ(decodeWorkingDirectory(recordIn("/Users/ada/code")), "/Users/ada/code");
}

TEST(WorkingDirectoryTest, AnEmptyPathIsNone) {
  EXPECT_EQ(decodeWorkingDirectory(recordIn("")), std::nullopt);
}

TEST(WorkingDirectoryTest, BytesAreGivenAsTheyAre) {
  EXPECT_EQ(decodeWorkingDirectory(recordIn("/tmp/\xff\n")), "/tmp/\xff\n");
}

TEST(WorkingDirectoryTest, APathWithoutAnEndStopsWithItsField) {
  const std::string brim(1024, 'a');
  EXPECT_EQ(decodeWorkingDirectory(recordIn(brim + "behind")), brim);
}

TEST(WorkingDirectoryTest, ARecordOfAnotherSizeIsNone) {
  ByteVector record = recordIn("/");
  for (std::size_t size = 0; size < kSize; ++size) {
    ASSERT_EQ(decodeWorkingDirectory(Bytes(record).first(size)), std::nullopt) << size;
  }
  record.push_back(0);
  EXPECT_EQ(decodeWorkingDirectory(record), std::nullopt);
}

TEST(WorkingDirectoryTest, AnyBytesGiveAPathWithoutNul) {
  for (std::uint32_t seed = 0; seed < 100; ++seed) {
    const auto path = decodeWorkingDirectory(randomBytes(kSize, seed));
    if (!path) continue;
    EXPECT_EQ(path->find('\0'), std::string::npos);
  }
}

}  // namespace
}  // namespace embrix
