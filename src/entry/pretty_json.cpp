#include "entry/pretty_json.h"

#include <cmath>
#include <iterator>
#include <utility>

#include <fmt/format.h>

#include "base/text.h"

namespace embrix {

void PrettyJSON::key(std::string_view name) {
  startValue();
  quoted(name);
  out_ += lines_ == Lines::one ? ":" : " : ";
  afterKey_ = true;
}

void PrettyJSON::text(std::string_view value) {
  startValue();
  quoted(value);
}

void PrettyJSON::integer(std::int64_t value) {
  startValue();
  fmt::format_to(std::back_inserter(out_), "{}", value);
}

void PrettyJSON::decimal(double value) {
  startValue();
  if (!std::isfinite(value)) {
    failed_ = true;
    return;
  }
  std::string digits = fmt::format("{:.2f}", value);
  digits.erase(digits.find_last_not_of('0') + 1);
  if (digits.back() == '.') digits.pop_back();
  out_ += digits == "-0" ? "0" : digits;
}

void PrettyJSON::decimalOrNull(std::optional<double> value) {
  if (value) {
    decimal(*value);
  } else {
    startValue();
    out_ += "null";
  }
}

std::optional<std::string> PrettyJSON::finish() && {
  if (failed_) return std::nullopt;
  return std::move(out_);
}

void PrettyJSON::begin(char bracket) {
  startValue();
  out_ += bracket;
  isEmpty_.push_back(true);
}

void PrettyJSON::end(char bracket) {
  const bool wasEmpty = isEmpty_.back();
  isEmpty_.pop_back();
  if (wasEmpty && lines_ == Lines::many) out_ += '\n';
  startLine();
  out_ += bracket;
}

// What stands between the value before and this one.
void PrettyJSON::startValue() {
  if (afterKey_) {
    afterKey_ = false;
    return;
  }
  if (isEmpty_.empty()) return;
  if (!isEmpty_.back()) out_ += ',';
  isEmpty_.back() = false;
  startLine();
}

void PrettyJSON::startLine() {
  if (lines_ == Lines::one) return;
  out_ += '\n';
  out_.append(2 * isEmpty_.size(), ' ');
}

void PrettyJSON::quoted(std::string_view value) {
  const std::string valid = Text::repaired(value);
  out_ += '"';
  for (std::size_t i = 0; i < valid.size(); ++i) {
    const auto byte = static_cast<unsigned char>(valid[i]);
    const auto next = static_cast<unsigned char>(i + 1 < valid.size() ? valid[i + 1] : 0);
    switch (byte) {
      case '"':
        out_ += "\\\"";
        break;
      case '\\':
        out_ += "\\\\";
        break;
      case '/':
        out_ += "\\/";
        break;
      case '\b':
        out_ += "\\b";
        break;
      case '\f':
        out_ += "\\f";
        break;
      case '\n':
        out_ += "\\n";
        break;
      case '\r':
        out_ += "\\r";
        break;
      case '\t':
        out_ += "\\t";
        break;
      default:
        if (byte < 0x20 || byte == 0x7f) {
          fmt::format_to(std::back_inserter(out_), "\\u{:04x}", byte);
        } else if (byte == 0xc2 && next < 0xa0) {  // U+0080 to U+009F
          fmt::format_to(std::back_inserter(out_), "\\u{:04x}", next);
          ++i;
        } else {
          out_ += valid[i];
        }
    }
  }
  out_ += '"';
}

}  // namespace embrix
