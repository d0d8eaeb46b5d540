#include "base/json.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace embrix {
namespace {

TEST(JsonTest, OnlyOneWholeValueIsJson) {
  struct Case {
    const char* label;
    std::string_view text;
    bool isJson;
  };
  const Case cases[] = {
      {"object", R"({"a":1})", true},
      {"white space around it", " [1, 2]\r\n", true},
      {"empty", "", false},
      {"blank", "  ", false},
      {"cut short", R"({"a":1)", false},
      {"a second value", "{} {}", false},
      {"a comma too many", "[1,]", false},
      {"a comment", "[1] // one", false},
      {"text that is not UTF-8", "[\"\xff\"]", false},
      {"a number of its own kind", "NaN", false},
  };
  for (const Case& test : cases) {
    EXPECT_EQ(parseJson(test.text).has_value(), test.isJson) << test.label;
  }
}

TEST(JsonTest, WhatIsNestedTooDeeplyIsAbsent) {
  const auto brackets = [](std::size_t depth) {
    return std::string(depth, '[') + std::string(depth, ']');
  };
  const auto braces = [](std::size_t depth) {
    std::string text = "0";
    for (std::size_t i = 0; i < depth; ++i) text = "{\"a\":" + text + "}";
    return text;
  };
  EXPECT_TRUE(parseJson(brackets(kDeepestJson)));
  EXPECT_FALSE(parseJson(brackets(kDeepestJson + 1)));
  EXPECT_TRUE(parseJson(braces(kDeepestJson)));
  EXPECT_FALSE(parseJson(braces(kDeepestJson + 1)));
  EXPECT_FALSE(parseJson(std::string(5'000'000, '[')));
}

TEST(JsonTest, BracketsBesideOneAnotherOrInTextsAreNotDeep) {
  std::string row = "[[]";
  for (int i = 0; i < 1000; ++i) row += ",[],{}";
  EXPECT_TRUE(parseJson(row + "]"));
  EXPECT_TRUE(parseJson('"' + std::string(1000, '[') + '"'));
  EXPECT_TRUE(parseJson("\"\\\"" + std::string(1000, '{') + "\\\\\""));
  EXPECT_FALSE(parseJson("[\"\\\\\"," + std::string(1000, '[')));
}

TEST(JsonTest, TheLastOfTwoEqualKeysStands) {
  EXPECT_EQ(parseJson(R"({"a":1,"a":2})"), (Json{{"a", 2}}));
}

TEST(JsonTest, DoublesComeBackAsTheyWere) {
  const double cases[] = {0.0,
                          -0.0,
                          0.1,
                          1.0 / 3,
                          1e300,
                          5e-324,
                          std::numeric_limits<double>::max(),
                          std::numeric_limits<double>::min(),
                          9007199254740993.0,
                          1750000000.123456};
  for (const double number : cases) {
    const auto read = parseJson(dumpJson(Json(number)));
    ASSERT_TRUE(read);
    EXPECT_EQ(jsonDouble(*read), number);
    EXPECT_EQ(std::signbit(*jsonDouble(*read)), std::signbit(number));
  }
}

TEST(JsonTest, AnyFiniteDoubleComesBackAsItWas) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 20'000; ++i) {
    double number = 0;
    const std::uint64_t bits = random();
    static_assert(sizeof number == sizeof bits);
    std::memcpy(&number, &bits, sizeof number);
    if (!std::isfinite(number)) continue;
    const auto read = parseJson(dumpJson(Json(number)));
    ASSERT_TRUE(read);
    ASSERT_EQ(jsonDouble(*read), number);
  }
}

TEST(JsonTest, WholeNumbersOf64BitsAreExact) {
  EXPECT_EQ(jsonInteger<std::uint64_t>(*parseJson("18446744073709551615")), UINT64_MAX);
  EXPECT_EQ(jsonInteger<std::int64_t>(*parseJson("-9223372036854775808")), INT64_MIN);
  EXPECT_EQ(dumpJson(Json(UINT64_MAX)), "18446744073709551615");
}

TEST(JsonTest, AWholeNumberOutsideItsTypeIsAbsent) {
  EXPECT_EQ(jsonInteger<std::uint64_t>(*parseJson("18446744073709551616")), std::nullopt);
  EXPECT_EQ(jsonInteger<std::int64_t>(*parseJson("9223372036854775808")), std::nullopt);
  EXPECT_EQ(jsonInteger<std::uint64_t>(*parseJson("-1")), std::nullopt);
  EXPECT_EQ(jsonInteger<std::int32_t>(*parseJson("2147483648")), std::nullopt);
  EXPECT_EQ(jsonInteger<std::int32_t>(*parseJson("-2147483648")), INT32_MIN);
  EXPECT_EQ(jsonInteger<std::uint32_t>(*parseJson("4294967295")), UINT32_MAX);
  EXPECT_EQ(jsonInteger<std::int32_t>(*parseJson("1.0")), std::nullopt);
  EXPECT_EQ(jsonInteger<std::int32_t>(*parseJson("1e2")), std::nullopt);
}

TEST(JsonTest, AValueOfAnotherTypeIsAbsent) {
  EXPECT_EQ(jsonBool(Json(1)), std::nullopt);
  EXPECT_EQ(jsonDouble(Json("1")), std::nullopt);
  EXPECT_EQ(jsonDouble(Json(true)), std::nullopt);
  EXPECT_EQ(jsonInteger<int>(Json(true)), std::nullopt);
  EXPECT_EQ(jsonText(Json(nullptr)), std::nullopt);
  EXPECT_EQ(jsonDouble(Json(3)), 3.0);
}

TEST(JsonTest, AKeyIsLookedUpInObjectsOnly) {
  const Json object = {{"a", nullptr}};
  EXPECT_NE(jsonAt(object, "a"), nullptr);
  EXPECT_EQ(jsonAt(object, "b"), nullptr);
  EXPECT_EQ(jsonAt(Json::array({1}), "a"), nullptr);
  EXPECT_EQ(jsonAt(Json(), "a"), nullptr);
}

TEST(JsonTest, AnyBytesCanBeWritten) {
  EXPECT_EQ(dumpJson(Json{{"name", "a\xff\x01z"}}), "{\"name\":\"a\uFFFD\\u0001z\"}");
  EXPECT_EQ(dumpJson(Json(std::numeric_limits<double>::quiet_NaN())), "null");
}

TEST(JsonTest, AnOrderedObjectKeepsItsOrder) {
  OrderedJson object;
  object["z"] = 1;
  object["a"] = 2;
  EXPECT_EQ(dumpJson(object), R"({"z":1,"a":2})");
}

TEST(JsonTest, Utf8IsToldFromOtherBytes) {
  struct Case {
    const char* label;
    std::string_view bytes;
    bool isUtf8;
  };
  const Case cases[] = {
      {"empty", "", true},
      {"ASCII with a zero byte", std::string_view("a\0b", 3), true},
      {"two, three and four bytes", "\u00e9\u20ac\U0001F525", true},
      {"a byte of a character's middle", "\x80", false},
      {"cut short", "\xf0\x9f\x94", false},
      {"longer than needed", "\xc0\xaf", false},
      {"half of a pair", "\xed\xa0\x80", false},
      {"above the last character", "\xf4\x90\x80\x80", false},
  };
  for (const Case& test : cases) EXPECT_EQ(isUtf8(test.bytes), test.isUtf8) << test.label;
}

}  // namespace
}  // namespace embrix
