#include "hosts/replay/recording_reader.h"

#include <memory>
#include <sstream>
#include <streambuf>

#include <gtest/gtest.h>

#include "hosts/replay/recording_format.h"

namespace embrix {
namespace {

const std::string kHeader = encodeHeader({.hostName = "macos"}) + "\n";

std::string tickLine(std::uint64_t number) {
  return encodeTick({.number = number}) + "\n";
}

// Reads the ticks to their end.
struct Reading {
  std::vector<std::uint64_t> ticks;
  std::string problem;
  bool torn = false;

  bool operator==(const Reading&) const = default;
};

Reading rest(RecordingReader& reader) {
  Reading reading;
  while (const auto tick = reader.tick()) reading.ticks.push_back(tick->number);
  reading.problem = reader.problem();
  reading.torn = reader.lastLineWasTorn();
  return reading;
}

Reading readingOf(std::string bytes) {
  RecordingReader reader(std::make_unique<std::istringstream>(std::move(bytes)), "r.jsonl");
  if (!reader.header()) return {{}, reader.problem(), false};
  return rest(reader);
}

TEST(RecordingReaderTest, TicksCountUpFromTheFirst) {
  struct Case {
    const char* label;
    std::string lines;
    Reading expected;
  };
  const Case cases[] = {
      {"none", "", {}},
      {"from one", tickLine(1) + tickLine(2), {{1, 2}, "", false}},
      {"from before the first", tickLine(0) + tickLine(1), {{0, 1}, "", false}},
      {"not from later", tickLine(2), {{}, "r.jsonl, line 2: tick 2 cannot be the first", false}},
      {"one missing",
       tickLine(1) + tickLine(3),
       {{1}, "r.jsonl, line 3: tick 3 does not follow tick 1", false}},
      {"one twice",
       tickLine(1) + tickLine(1),
       {{1}, "r.jsonl, line 3: tick 1 does not follow tick 1", false}},
      {"back to the start",
       tickLine(0) + tickLine(0),
       {{0}, "r.jsonl, line 3: tick 0 does not follow tick 0", false}},
      {"the largest",
       tickLine(UINT64_MAX),
       {{}, "r.jsonl, line 2: tick 18446744073709551615 cannot be the first", false}},
  };
  for (const Case& test : cases) {
    EXPECT_EQ(readingOf(kHeader + test.lines), test.expected) << test.label;
  }
}

TEST(RecordingReaderTest, ALastLineCutShortIsLeftOut) {
  const std::string whole = kHeader + tickLine(1);
  EXPECT_EQ(readingOf(whole + "{\"tick\":2"), (Reading{{1}, "", true}));
  EXPECT_EQ(readingOf(whole + "{"), (Reading{{1}, "", true}));
  EXPECT_EQ(readingOf(whole + "{\"tick\":2}"), (Reading{{1, 2}, "", false}));
}

TEST(RecordingReaderTest, AnyOtherDamageIsAProblem) {
  struct Case {
    const char* label;
    std::string bytes;
    const char* problem;
  };
  const Case cases[] = {
      {"cut short but ended", kHeader + "{\"tick\":1\n", "r.jsonl, line 2: is no JSON"},
      {"in the middle", kHeader + "{\"tick\n" + tickLine(2), "r.jsonl, line 2: is no JSON"},
      {"whole without end, and wrong", kHeader + "{\"tack\":1}",
       "r.jsonl, line 2: tick is missing"},
      {"a blank line", kHeader + "\n" + tickLine(1), "r.jsonl, line 2: is no JSON"},
      {"a blank line at the end", kHeader + tickLine(1) + "\n", "r.jsonl, line 3: is no JSON"},
      {"a header cut short", kHeader.substr(0, 30), "r.jsonl, line 1: is no JSON"},
      {"no header", tickLine(1), "r.jsonl, line 1: is not the start of a recording"},
      {"nothing", "", "cannot replay r.jsonl: it is empty"},
  };
  for (const Case& test : cases) {
    EXPECT_EQ(readingOf(test.bytes).problem, test.problem) << test.label;
  }
}

TEST(RecordingReaderTest, LinesMayEndInACarriageReturn) {
  const std::string header = kHeader.substr(0, kHeader.size() - 1) + "\r\n";
  EXPECT_EQ(readingOf(header + "{\"tick\":1}\r\n"), (Reading{{1}, "", false}));
}

TEST(RecordingReaderTest, LinesOfAnyLengthAroundABlockAreWhole) {
  for (const std::size_t padding : {65000U, 65530U, 65535U, 65536U, 65537U, 131072U, 200000U}) {
    const std::string line = "{\"tick\":1,\"x\":\"" + std::string(padding, 'x') + "\"}\n";
    EXPECT_EQ(readingOf(kHeader + line + tickLine(2)), (Reading{{1, 2}, "", false})) << padding;
  }
}

TEST(RecordingReaderTest, ItCanBeReadAgain) {
  const std::string bytes = kHeader + tickLine(1) + tickLine(2) + "{";
  RecordingReader reader(std::make_unique<std::istringstream>(bytes), "r.jsonl");
  ASSERT_TRUE(reader.header());
  const Reading first = rest(reader);
  reader.rewind();
  EXPECT_FALSE(reader.lastLineWasTorn());
  ASSERT_TRUE(reader.header());
  EXPECT_EQ(rest(reader), first);
}

TEST(RecordingReaderTest, AProblemOfALineNamesTheLine) {
  RecordingReader reader(std::make_unique<std::istringstream>(kHeader + tickLine(1) + tickLine(2)),
                         "r.jsonl");
  ASSERT_TRUE(reader.header());
  ASSERT_TRUE(reader.tick());
  reader.reject({"is not liked"});
  EXPECT_FALSE(reader.tick());
  EXPECT_EQ(reader.problem(), "r.jsonl, line 2: is not liked");
}

// Gives the same letter for ever, and counts how much was taken of it.
struct Endless final : std::streambuf {
  std::streamsize given = 0;
  std::streamsize xsgetn(char* into, std::streamsize count) override {
    std::fill_n(into, count, 'x');
    given += count;
    return count;
  }
};

TEST(RecordingReaderTest, AnEndlessLineIsNotReadToItsEnd) {
  Endless endless;
  RecordingReader reader(std::make_unique<std::istream>(&endless), "r.jsonl");
  EXPECT_FALSE(reader.header());
  EXPECT_EQ(reader.problem(), "r.jsonl, line 1: is longer than 64 MiB");
  EXPECT_LT(endless.given, std::streamsize{2} * kLongestRecordingLine);
}

// Breaks off with an error instead of an end.
struct Failing final : std::streambuf {
  std::streamsize xsgetn(char*, std::streamsize) override { throw std::ios_base::failure("disk"); }
};

TEST(RecordingReaderTest, AnErrorWhileReadingIsNoEnd) {
  Failing failing;
  RecordingReader reader(std::make_unique<std::istream>(&failing), "r.jsonl");
  EXPECT_FALSE(reader.header());
  EXPECT_EQ(reader.problem(), "r.jsonl, line 1: cannot be read");
}

}  // namespace
}  // namespace embrix
