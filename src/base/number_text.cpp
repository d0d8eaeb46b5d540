#include "base/number_text.h"

#include <locale.h>
#include <cstdlib>
#include <string>
#if __has_include(<xlocale.h>)
#include <xlocale.h>
#endif

namespace embrix {

namespace {

// strtod alone follows the locale that a toolkit may set, and std::from_chars for doubles is not
// in every standard library that the program is built with.
double parse(const char* text, char** end) {
  static const locale_t kClassic = newlocale(LC_ALL_MASK, "C", nullptr);
  return strtod_l(text, end, kClassic);
}

bool isBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// How many characters of `text` form a decimal number with optional sign, fraction and exponent.
std::size_t decimalLength(std::string_view text) {
  std::size_t at = 0;
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
  std::size_t digits = 0;
  while (at < text.size() && isDigit(text[at])) ++at, ++digits;
  if (at < text.size() && text[at] == '.') {
    ++at;
    while (at < text.size() && isDigit(text[at])) ++at, ++digits;
  }
  if (digits == 0) return 0;
  std::size_t exponent = at;
  if (exponent < text.size() && (text[exponent] == 'e' || text[exponent] == 'E')) {
    ++exponent;
    if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) ++exponent;
    const std::size_t first = exponent;
    while (exponent < text.size() && isDigit(text[exponent])) ++exponent;
    if (exponent > first) at = exponent;
  }
  return at;
}

}  // namespace

std::optional<double> wholeDouble(std::string_view text) {
  if (text.empty() || isBlank(text.front())) return std::nullopt;
  // A payload such as "nan(1)" is strtod's own and no way to write a number here.
  if (text.find('(') != std::string_view::npos) return std::nullopt;
  const std::string terminated(text);
  char* end = nullptr;
  const double value = parse(terminated.c_str(), &end);
  if (end != terminated.c_str() + terminated.size()) return std::nullopt;
  return value;
}

double leadingDouble(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  const std::string number(text.substr(0, decimalLength(text)));
  return number.empty() ? 0 : parse(number.c_str(), nullptr);
}

}  // namespace embrix
