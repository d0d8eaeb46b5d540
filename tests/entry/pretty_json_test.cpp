#include "entry/pretty_json.h"

#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace embrix {
namespace {

std::optional<std::string> textOf(std::string_view value) {
  PrettyJSON json;
  json.text(value);
  return std::move(json).finish();
}

std::optional<std::string> decimalOf(double value) {
  PrettyJSON json;
  json.decimal(value);
  return std::move(json).finish();
}

TEST(PrettyJSONTest, LayoutIsFixed) {
  PrettyJSON json;
  json.beginObject();
  json.key("a");
  json.beginArray();
  json.integer(1);
  json.beginObject();
  json.key("b");
  json.text("c");
  json.key("d");
  json.decimalOrNull(std::nullopt);
  json.endObject();
  json.endArray();
  json.key("e");
  json.beginArray();
  json.endArray();
  json.key("f");
  json.beginObject();
  json.endObject();
  json.endObject();
  EXPECT_EQ(std::move(json).finish(),
            "{\n"
            "  \"a\" : [\n"
            "    1,\n"
            "    {\n"
            "      \"b\" : \"c\",\n"
            "      \"d\" : null\n"
            "    }\n"
            "  ],\n"
            "  \"e\" : [\n"
            "\n"
            "  ],\n"
            "  \"f\" : {\n"
            "\n"
            "  }\n"
            "}");
}

TEST(PrettyJSONTest, DecimalsHaveAtMostTwoPlacesAndNoTrailingZeros) {
  const struct {
    double input;
    const char* expected;
  } rows[] = {
      {12.5, "12.5"},
      {3, "3"},
      {0.07, "0.07"},
      {0, "0"},
      {-0.0, "0"},
      {-0.001, "0"},
      {0.004, "0"},
      {0.006, "0.01"},
      {10, "10"},
      {100.10, "100.1"},
      {-2.25, "-2.25"},
      {-0.05, "-0.05"},
      {99.999, "100"},
      {1e6, "1000000"},
      {123456789.125, "123456789.12"},
      {1e20, "100000000000000000000"},
  };
  for (const auto& row : rows) EXPECT_EQ(decimalOf(row.input), row.expected) << row.input;
}

TEST(PrettyJSONTest, ANumberWithoutAFormFailsTheDocument) {
  EXPECT_EQ(decimalOf(std::nan("")), std::nullopt);
  EXPECT_EQ(decimalOf(std::numeric_limits<double>::infinity()), std::nullopt);
  EXPECT_EQ(decimalOf(-std::numeric_limits<double>::infinity()), std::nullopt);
  // A later number does not mend it.
  PrettyJSON json;
  json.beginArray();
  json.decimal(std::nan(""));
  json.decimal(1);
  json.endArray();
  EXPECT_EQ(std::move(json).finish(), std::nullopt);
}

TEST(PrettyJSONTest, TextsAreEscaped) {
  const struct {
    std::string label;
    std::string_view input;
    std::string expected;
  } rows[] = {
      {"plain", "Xcode", "\"Xcode\""},
      {"empty", "", "\"\""},
      {"quote and backslash", "a\"b\\c", "\"a\\\"b\\\\c\""},
      {"slash", "/usr/bin", "\"\\/usr\\/bin\""},
      {"named controls", "\b\f\n\r\t", "\"\\b\\f\\n\\r\\t\""},
      {"other controls", "\x01\x1b[31m\x1f", "\"\\u0001\\u001b[31m\\u001f\""},
      {"zero byte", std::string_view("a\0b", 3), "\"a\\u0000b\""},
      {"delete", "\x7f", "\"\\u007f\""},
      {"controls above ASCII", "\xc2\x80\xc2\x9b\xc2\x9f", "\"\\u0080\\u009b\\u009f\""},
      {"first character above them", "\xc2\xa0", "\"\xc2\xa0\""},
      {"UTF-8 is kept", "Müller – 日本 🔥", "\"Müller – 日本 🔥\""},
      {"ill-formed bytes are repaired", "a\xff\xc3", "\"a\xEF\xBF\xBD\xEF\xBF\xBD\""},
  };
  for (const auto& row : rows) EXPECT_EQ(textOf(row.input), row.expected) << row.label;
}

TEST(PrettyJSONTest, EveryByteStringIsReadBackByAParser) {
  for (int first = 0; first < 256; ++first) {
    for (const int second : {0x00, 0x61, 0x80, 0x9b, 0xbf, 0xc2, 0xff}) {
      const std::string bytes{static_cast<char>(first), static_cast<char>(second)};
      const auto json = textOf(bytes);
      ASSERT_TRUE(json.has_value());
      EXPECT_TRUE(nlohmann::json::accept(*json)) << first << " " << second;
    }
  }
}

TEST(PrettyJSONTest, OnOneLineNothingIsSpread) {
  PrettyJSON json(PrettyJSON::Lines::one);
  json.beginObject();
  json.key("a");
  json.beginArray();
  json.endArray();
  json.key("b");
  json.beginArray();
  json.integer(1);
  json.text("x/y\n");
  json.beginObject();
  json.endObject();
  json.endArray();
  json.key("c");
  json.decimal(3);
  json.endObject();
  EXPECT_EQ(std::move(json).finish(), R"({"a":[],"b":[1,"x\/y\n",{}],"c":3})");
}

}  // namespace
}  // namespace embrix
