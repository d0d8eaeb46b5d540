#include "base/number_text.h"

#include <locale.h>
#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace embrix {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(NumberTextTest, WholeTextIsANumber) {
  const struct {
    std::string label;
    std::string_view input;
    std::optional<double> expected;
  } rows[] = {
      {"whole", "5", 5.0},
      {"fraction", "2.5", 2.5},
      {"no digit before the point", ".5", 0.5},
      {"no digit behind the point", "5.", 5.0},
      {"sign", "-3", -3.0},
      {"plus", "+3", 3.0},
      {"exponent", "1e3", 1000.0},
      {"hexadecimal", "0x10", 16.0},
      {"infinity", "inf", kInfinity},
      {"too large", "1e999", kInfinity},
      {"empty", "", std::nullopt},
      {"word", "dark", std::nullopt},
      {"blank before", " 5", std::nullopt},
      {"blank behind", "5 ", std::nullopt},
      {"rest", "5s", std::nullopt},
      {"comma", "2,5", std::nullopt},
      {"two numbers", "5=6", std::nullopt},
      {"sign alone", "-", std::nullopt},
      {"nan with a payload", "nan(1)", std::nullopt},
      {"zero byte behind", std::string_view("5\0", 2), std::nullopt},
  };
  for (const auto& row : rows) EXPECT_EQ(wholeDouble(row.input), row.expected) << row.label;
  EXPECT_TRUE(std::isnan(wholeDouble("nan").value()));
}

TEST(NumberTextTest, LeadingNumberIsTakenAndTheRestLeft) {
  const struct {
    std::string label;
    std::string_view input;
    double expected;
  } rows[] = {
      {"whole text", "8.5", 8.5},
      {"unit behind", "15 W", 15},
      {"blanks before", " \t\n7", 7},
      {"sign", "-2.5x", -2.5},
      {"exponent", "2e1x", 20},
      {"exponent without digits", "2e+", 2},
      {"second point", "1.2.3", 1.2},
      {"word", "warm", 0},
      {"empty", "", 0},
      {"sign alone", "-", 0},
      {"point alone", ".", 0},
      {"infinity is a word", "inf", 0},
      {"nan is a word", "nan", 0},
      {"hexadecimal is a zero", "0x10", 0},
      {"too large", "1e999", kInfinity},
  };
  for (const auto& row : rows) EXPECT_EQ(leadingDouble(row.input), row.expected) << row.label;
}

TEST(NumberTextTest, TheLocaleHasNoSay) {
  const std::string before = setlocale(LC_ALL, nullptr);
  // Where no such locale is installed the classic one stays, and the answers are the same.
  setlocale(LC_ALL, "de_DE.UTF-8");
  EXPECT_EQ(wholeDouble("2.5"), 2.5);
  EXPECT_EQ(wholeDouble("2,5"), std::nullopt);
  EXPECT_EQ(leadingDouble("2.5"), 2.5);
  setlocale(LC_ALL, before.c_str());
}

}  // namespace
}  // namespace embrix
