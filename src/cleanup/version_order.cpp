#include "cleanup/version_order.h"

#include <algorithm>

namespace embrix {

namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// Takes the digits at the front, without the zeros that lead them.
std::string_view takeNumber(std::string_view& text) {
  const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
  std::string_view digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
  text.remove_prefix(digits.size());
  digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
  return digits;
}

}  // namespace

std::strong_ordering compareVersions(std::string_view a, std::string_view b) {
  while (!a.empty() && !b.empty()) {
    if (isDigit(a.front()) && isDigit(b.front())) {
      const std::string_view left = takeNumber(a);
      const std::string_view right = takeNumber(b);
      if (left.size() != right.size()) return left.size() <=> right.size();
      if (const auto order = left <=> right; order != 0) return order;
    } else {
      const auto order =
          static_cast<unsigned char>(a.front()) <=> static_cast<unsigned char>(b.front());
      if (order != 0) return order;
      a.remove_prefix(1);
      b.remove_prefix(1);
    }
  }
  return a.size() <=> b.size();
}

}  // namespace embrix
