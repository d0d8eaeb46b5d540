// Writes JSON for people to read, as it goes: two blanks of indent, " : " between key and value,
// slashes escaped, an empty array or object around an empty line. Or all of it on one line, without
// a blank between values. Scripts compare this output by the byte, so the form never changes. The
// caller gives an object's keys in alphabetical order.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace embrix {

class PrettyJSON {
 public:
  enum class Lines { many, one };

  explicit PrettyJSON(Lines lines = Lines::many) : lines_(lines) {}

  void beginObject() { begin('{'); }
  void endObject() { end('}'); }
  void beginArray() { begin('['); }
  void endArray() { end(']'); }

  // Inside an object, before each value.
  void key(std::string_view name);

  // Any bytes; ill-formed UTF-8 is repaired. Control characters are escaped, those above U+007F
  // too, so that none reaches a terminal.
  void text(std::string_view value);
  void integer(std::int64_t value);
  // Rounded to two decimals and written without trailing zeros: 12.5, 3, 0.07. JSON has no form for
  // NaN and the infinities: with one of them the whole document fails.
  void decimal(double value);
  void decimalOrNull(std::optional<double> value);

  // The document without a line break at its end; absent when a value had no form.
  std::optional<std::string> finish() &&;

 private:
  void begin(char bracket);
  void end(char bracket);
  void startValue();
  void startLine();
  void quoted(std::string_view value);

  Lines lines_;
  std::string out_;
  std::vector<bool> isEmpty_;  // of each open array or object, outermost first
  bool afterKey_ = false;
  bool failed_ = false;
};

}  // namespace embrix
