#include "darwin/argument_block.h"

#include <gtest/gtest.h>

#include <limits>

#include "kernel_bytes.h"

namespace embrix {
namespace {

using namespace std::string_literals;
using Arguments = std::vector<std::string>;

Arguments decoded(std::int32_t count, const std::string& rest) {
  ByteVector block(4);
  put(block, 0, count);
  block.insert(block.end(), rest.begin(), rest.end());
  return decodeArguments(block);
}

constexpr const char* kPath = "/usr/local/bin/node";

TEST(ArgumentBlockTest, ArgumentsFollowThePathAndItsPadding) {
  EXPECT_EQ(decoded(3, kPath + "\0\0\0\0\0node\0server.js\0--port=3000\0"s),
            (Arguments{"node", "server.js", "--port=3000"}));
}

TEST(ArgumentBlockTest, OneByteOfPaddingIsEnough) {
  EXPECT_EQ(decoded(1, kPath + "\0node\0"s), Arguments{"node"});
}

TEST(ArgumentBlockTest, TheEnvironmentBehindIsNotTouched) {
  EXPECT_EQ(decoded(2, kPath + "\0\0node\0a.js\0SECRET=1\0PATH=/bin\0"s),
            (Arguments{"node", "a.js"}));
}

TEST(ArgumentBlockTest, ABlockThatHoldsOnlyThePathGivesNothing) {
  EXPECT_EQ(decoded(1, kPath), Arguments{});
  EXPECT_EQ(decoded(1, kPath + "\0"s), Arguments{});
  EXPECT_EQ(decoded(1, kPath + "\0\0\0\0"s), Arguments{});
}

TEST(ArgumentBlockTest, AnEmptyArgumentBetweenOthersStands) {
  EXPECT_EQ(decoded(3, kPath + "\0node\0\0x\0"s), (Arguments{"node", "", "x"}));
}

TEST(ArgumentBlockTest, AnUnfinishedLastArgumentStands) {
  EXPECT_EQ(decoded(3, kPath + "\0node\0serv"s), (Arguments{"node", "serv"}));
}

TEST(ArgumentBlockTest, BytesAreGivenAsTheyAre) {
  EXPECT_EQ(decoded(2, "/\xff\0\xf0\x9f\x98\0\x1b[31m\xc3\0"s),
            (Arguments{"\xf0\x9f\x98", "\x1b[31m\xc3"}));
}

TEST(ArgumentBlockTest, ACountBeyondTheBlockEndsWithTheBlock) {
  EXPECT_EQ(decoded(std::numeric_limits<std::int32_t>::max(), kPath + "\0a\0b\0"s),
            (Arguments{"a", "b"}));
}

TEST(ArgumentBlockTest, ACountBelowOneGivesNothing) {
  for (const std::int32_t count : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_EQ(decoded(count, kPath + "\0a\0b\0"s), Arguments{}) << count;
  }
}

TEST(ArgumentBlockTest, LessThanFiveBytesAreNoBlock) {
  EXPECT_EQ(decodeArguments({}), Arguments{});
  EXPECT_EQ(decoded(1, ""), Arguments{});
  for (std::size_t size = 0; size < 4; ++size) {
    EXPECT_EQ(decodeArguments(ByteVector(size, 1)), Arguments{}) << size;
  }
}

TEST(ArgumentBlockTest, EveryTruncationGivesAPrefixOfTheArguments) {
  const std::string whole = kPath + "\0\0node\0server.js\0"s;
  const Arguments all{"node", "server.js"};
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    const Arguments some = decoded(2, whole.substr(0, size));
    ASSERT_LE(some.size(), all.size());
    for (std::size_t i = 0; i < some.size(); ++i) {
      const bool isWhole = some[i] == all[i];
      EXPECT_TRUE(isWhole || (i + 1 == some.size() && all[i].starts_with(some[i]))) << size;
    }
  }
}

TEST(ArgumentBlockTest, AnyBytesGiveNoMoreThanTheyHold) {
  for (std::uint32_t seed = 0; seed < 200; ++seed) {
    ByteVector block = randomBytes(256, seed);
    put(block, 0, std::int32_t{static_cast<std::int32_t>(seed)});
    std::size_t total = 0;
    for (const std::string& argument : decodeArguments(block)) total += argument.size() + 1;
    EXPECT_LE(total, block.size()) << seed;
  }
}

}  // namespace
}  // namespace embrix
