#include "records/json_writer.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <limits>

#include <fmt/compile.h>
#include <fmt/format.h>

#include "base/text.h"

namespace embrix {

namespace {

bool isPlain(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= ' ' && byte < 0x7f && c != '"' && c != '\\';
}

void appendEscaped(std::string& out, char c) {
  switch (c) {
    case '"':
      out += "\\\"";
      break;
    case '\\':
      out += "\\\\";
      break;
    default:
      const auto byte = static_cast<unsigned char>(c);
      if (byte < ' ') {
        fmt::format_to(std::back_inserter(out), "\\u{:04x}", byte);
      } else {
        out += c;
      }
  }
}

// The longest is a double like -2.2250738585072014e-308.
constexpr std::size_t kLongestNumber = 32;

template <typename Number>
void appendNumber(std::string& out, Number number) {
  std::array<char, kLongestNumber> digits;
  char* const end = fmt::format_to(digits.data(), FMT_COMPILE("{}"), number);
  out.append(digits.data(), end);
}

}  // namespace

void JsonWriter::begin(std::string_view name) {
  out_ += isFirst_ ? "\"" : ",\"";
  isFirst_ = false;
  out_ += name;
  out_ += "\":";
}

void JsonWriter::required(std::string_view name, std::int64_t number) {
  begin(name);
  appendNumber(out_, number);
}

void JsonWriter::append(std::string& out, double finite) {
  appendNumber(out, finite);
}

void JsonWriter::append(std::string& out, float finite) {
  appendNumber(out, finite);
}

void JsonWriter::append(std::string& out, std::string_view text) {
  out += '"';
  if (std::all_of(text.begin(), text.end(), isPlain)) {
    out += text;
  } else {
    for (const char c : Text::repaired(text)) appendEscaped(out, c);
  }
  out += '"';
}

double JsonWriter::nearestTo(double number) {
  if (std::isnan(number)) return 0;
  return std::copysign(std::numeric_limits<double>::max(), number);
}

}  // namespace embrix
