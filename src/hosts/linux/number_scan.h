// A cursor that takes decimal numbers off the front of a kernel file's text. A tick scans some
// thirty thousand of them, which is why it does not go through the library's general conversions.
#pragma once

#include <charconv>
#include <cstdint>
#include <string_view>

namespace embrix {

class NumberScan {
 public:
  explicit NumberScan(std::string_view text) : at_(text.data()), end_(text.data() + text.size()) {}

  // The next number behind any blanks. False at the end of the text, at anything that is no
  // numeral, and when the number does not fit; the cursor then stays.
  template <typename Integer>
  bool next(Integer& number) {
    const char* start = at_;
    while (start != end_ && (*start == ' ' || *start == '\t')) ++start;
    const auto result = std::from_chars(start, end_, number);
    if (result.ec != std::errc()) return false;
    at_ = result.ptr;
    return true;
  }

  // The next blank-separated field, whatever it holds; empty at the end of the text.
  std::string_view word() {
    while (at_ != end_ && (*at_ == ' ' || *at_ == '\t')) ++at_;
    const char* start = at_;
    while (at_ != end_ && *at_ != ' ' && *at_ != '\t') ++at_;
    return {start, static_cast<std::size_t>(at_ - start)};
  }

  // Passes over so many fields. False when there are fewer.
  bool skip(int fields) {
    for (; fields > 0; --fields) {
      if (word().empty()) return false;
    }
    return true;
  }

 private:
  const char* at_;
  const char* end_;
};

}  // namespace embrix
