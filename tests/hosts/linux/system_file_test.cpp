#include "hosts/linux/system_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <string>
#include <vector>

#include "captured_tree.h"

namespace embrix {
namespace {

using namespace std::string_literals;

TEST(SystemFileTest, TheRootStandsBeforeAnAbsolutePath) {
  EXPECT_EQ(belowRoot("/", "/proc/meminfo"), "/proc/meminfo");
  EXPECT_EQ(belowRoot("", "/proc/meminfo"), "/proc/meminfo");
  EXPECT_EQ(belowRoot("/captured", "/proc"), "/captured/proc");
  EXPECT_EQ(belowRoot("/captured//", "/proc"), "/captured/proc");
}

TEST(SystemFileTest, ANumberIsTheWholeTextOrNothing) {
  struct Case {
    const char* label;
    std::string text;
    std::optional<std::int64_t> expected;
  };
  const Case cases[] = {
      {"as the kernel writes it", "42\n", 42},
      {"negative", "-273200\n", -273200},
      {"blanks around it", " \t7 \r\n", 7},
      {"the largest", "9223372036854775807", std::numeric_limits<std::int64_t>::max()},
      {"the smallest", "-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
      {"one above the largest", "9223372036854775808", std::nullopt},
      {"an unsigned one of all bits", "18446744073709551615", std::nullopt},
      {"forty digits", std::string(40, '9'), std::nullopt},
      {"empty", "", std::nullopt},
      {"a line end alone", "\n", std::nullopt},
      {"text", "unknown\n", std::nullopt},
      {"text behind it", "12 mV\n", std::nullopt},
      {"a fraction", "1.5", std::nullopt},
      {"hexadecimal", "0x10", std::nullopt},
      {"two numbers", "1 2", std::nullopt},
      {"a sign alone", "-", std::nullopt},
      {"a NUL behind it", "5\0"s, std::nullopt},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(wholeInteger(c.text), c.expected) << c.label;
  }
}

TEST(SystemFileTest, ALineEndsAtALineEndOrNul) {
  CapturedTree tree;
  struct Case {
    const char* label;
    std::string content;
    std::optional<std::string> expected;
  };
  const Case cases[] = {
      {"one line", "coretemp\n", "coretemp"},
      {"a device tree's text", "Board 4\0Board\0"s, "Board 4"},
      {"the first of two", "first\nsecond\n", "first"},
      {"padded", "  padded  \n", "padded"},
      {"empty", "", std::nullopt},
      {"blank", "   \n", std::nullopt},
      {"an empty first line", "\nsecond", std::nullopt},
  };
  for (const Case& c : cases) {
    tree.write("file", c.content);
    EXPECT_EQ(readSystemLine(tree.root() + "/file"), c.expected) << c.label;
  }
  EXPECT_EQ(readSystemLine(tree.root() + "/missing"), std::nullopt);
}

TEST(SystemFileTest, OnlyTheFirstBytesAreRead) {
  CapturedTree tree;
  tree.write("big", std::string(100'000, 'x'));
  EXPECT_EQ(readSystemFile(tree.root() + "/big", 10), std::string(10, 'x'));
  EXPECT_EQ(readSystemFile(tree.root() + "/big")->size(), 64u * 1024);
  EXPECT_EQ(readSystemFile(tree.root() + "/big", 200'000)->size(), 100'000u);
}

TEST(SystemFileTest, WhatIsNoReadableFileIsAbsent) {
  CapturedTree tree;
  tree.write("folder/file", "1");
  tree.link("broken", "nowhere");
  tree.link("circle", "circle");
  ASSERT_EQ(::mkfifo((tree.root() + "/pipe").c_str(), 0600), 0);
  for (const char* name : {"missing", "folder", "broken", "circle", "folder/file/deeper"}) {
    EXPECT_EQ(readSystemFile(tree.root() + "/" + name), std::nullopt) << name;
    EXPECT_EQ(readInteger(tree.root() + "/" + name), std::nullopt) << name;
    EXPECT_EQ(HeldFile(tree.root() + "/" + name).integer(), std::nullopt) << name;
  }
  // A pipe without a writer would hold whoever opens it to read.
  EXPECT_EQ(readInteger(tree.root() + "/pipe"), std::nullopt);
  EXPECT_EQ(HeldFile(tree.root() + "/pipe").integer(), std::nullopt);
}

TEST(SystemFileTest, NamesComeInTheOrderOfTheirNumbers) {
  CapturedTree tree;
  for (const char* name : {"hwmon10", "hwmon2", "hwmon1", "name"}) tree.write(name, "");
  EXPECT_EQ(namesIn(tree.root()),
            (std::vector<std::string>{"name", "hwmon1", "hwmon2", "hwmon10"}));
  EXPECT_TRUE(namesIn(tree.root() + "/missing").empty());
  EXPECT_TRUE(namesIn(tree.root() + "/name").empty());
}

TEST(SystemFileTest, PiecesLieBetweenSeparators) {
  std::vector<std::string> pieces;
  forEachPiece("a::b:", ':', [&](std::string_view piece) { pieces.emplace_back(piece); });
  EXPECT_EQ(pieces, (std::vector<std::string>{"a", "", "b", ""}));
}

TEST(HeldFileTest, EachReadSeesThePresentContent) {
  CapturedTree tree;
  tree.write("value", "1\n");
  HeldFile file(tree.root() + "/value");
  EXPECT_EQ(file.integer(), 1);
  tree.write("value", "23\n");
  EXPECT_EQ(file.integer(), 23);
  tree.write("value", "");
  EXPECT_EQ(file.integer(), std::nullopt);
  tree.write("value", "4\n");
  EXPECT_EQ(file.integer(), 4);
}

TEST(HeldFileTest, AFileThatComesLaterIsFoundWithinSixteenReads) {
  CapturedTree tree;
  HeldFile file(tree.root() + "/late");
  EXPECT_EQ(file.integer(), std::nullopt);
  tree.write("late", "5");
  for (int read = 1; read < 16; ++read) {
    EXPECT_EQ(file.integer(), std::nullopt);  // not even looked for
  }
  EXPECT_EQ(file.integer(), 5);
}

TEST(HeldFileTest, AMovedFileGoesOnAndLeavesNothingBehind) {
  CapturedTree tree;
  tree.write("a", "1");
  tree.write("b", "2");
  HeldFile first(tree.root() + "/a");
  EXPECT_EQ(first.integer(), 1);
  HeldFile second(std::move(first));
  EXPECT_EQ(second.integer(), 1);
  second = HeldFile(tree.root() + "/b");
  EXPECT_EQ(second.integer(), 2);
  EXPECT_EQ(second.path(), tree.root() + "/b");
}

TEST(HeldFileTest, AsMuchIsReadAsTheBufferHolds) {
  CapturedTree tree;
  tree.write("text", "suspended\n");
  HeldFile file(tree.root() + "/text");
  std::array<char, 4> buffer;
  EXPECT_EQ(file.read(buffer), "susp");
}

}  // namespace
}  // namespace embrix
