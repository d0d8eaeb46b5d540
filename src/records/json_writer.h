// Writes one JSON object into a text, field by field. What it does with bytes and numbers that JSON
// has not is told in record_encoding.h. Any thread.
#pragma once

#include <cmath>
#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/shared_text.h"

namespace embrix {

class JsonWriter {
 public:
  // Begins the object behind what stands in `out`, which must outlive the writer.
  explicit JsonWriter(std::string& out) : out_(out) { out_ += '{'; }

  // Ends it.
  void end() { out_ += '}'; }

  // Names must need no escapes.
  void required(std::string_view name, double number) {
    begin(name);
    append(out_, std::isfinite(number) ? number : nearestTo(number));
  }
  void required(std::string_view name, std::int64_t number);
  void required(std::string_view name, int number) { required(name, std::int64_t{number}); }
  void required(std::string_view name, std::string_view text) {
    begin(name);
    append(out_, text);
  }

  template <typename Value>
  void optional(std::string_view name, const std::optional<Value>& value) {
    if constexpr (std::floating_point<Value>) {
      if (value && !std::isfinite(*value)) return;
    }
    if (value) required(name, *value);
  }

  // A map of doubles or of texts.
  template <typename Map>
  void object(std::string_view name, const Map& map) {
    begin(name);
    out_ += '{';
    bool isFirst = true;
    for (const auto& [key, value] : map) {
      if constexpr (std::convertible_to<decltype(value), double>) {
        if (!std::isfinite(value)) continue;
      }
      if (!isFirst) out_ += ',';
      isFirst = false;
      append(out_, key.view());
      out_ += ':';
      append(out_, value);
    }
    out_ += '}';
  }

  // Writes the name; the value is then the caller's to append.
  void begin(std::string_view name);

  static void append(std::string& out, double finite);
  static void append(std::string& out, float finite);
  // Quoted and escaped.
  static void append(std::string& out, std::string_view text);
  static void append(std::string& out, const SharedText& text) { append(out, text.view()); }

 private:
  static double nearestTo(double number);

  std::string& out_;
  bool isFirst_ = true;
};

}  // namespace embrix
