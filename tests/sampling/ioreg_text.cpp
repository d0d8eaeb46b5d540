#include "ioreg_text.h"

#include <charconv>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace embrix {

namespace {

class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  Property value() {
    if (take("{")) return map();
    if (take("(")) return list();
    if (take("\"")) return upTo('"');
    if (take("<")) {
      upTo('>');
      return {};
    }
    if (take("Yes")) return true;
    if (take("No")) return false;
    if (rest_.empty() || rest_.front() == ',' || rest_.front() == '}') return {};
    return number();
  }

  void end() const {
    if (!rest_.empty()) fail();
  }

 private:
  PropertyMap map() {
    PropertyMap map;
    while (!take("}")) {
      expect("\"");
      const std::string key = upTo('"');
      expect("=");
      map[key] = value();
      take(",");
    }
    return map;
  }

  PropertyList list() {
    PropertyList list;
    while (!take(")")) {
      list.push_back(value());
      take(",");
    }
    return list;
  }

  std::int64_t number() {
    const bool isNegative = take("-");
    std::uint64_t bits = 0;
    const auto result = std::from_chars(rest_.data(), rest_.data() + rest_.size(), bits);
    if (result.ec != std::errc()) fail();
    rest_.remove_prefix(static_cast<std::size_t>(result.ptr - rest_.data()));
    const auto number = static_cast<std::int64_t>(bits);
    return isNegative ? -number : number;
  }

  std::string upTo(char end) {
    const auto place = rest_.find(end);
    if (place == std::string_view::npos) fail();
    std::string text(rest_.substr(0, place));
    rest_.remove_prefix(place + 1);
    return text;
  }

  bool take(std::string_view prefix) {
    if (!rest_.starts_with(prefix)) return false;
    rest_.remove_prefix(prefix.size());
    return true;
  }

  void expect(std::string_view prefix) {
    if (!take(prefix)) fail();
  }

  [[noreturn]] void fail() const {
    throw std::runtime_error("no ioreg value at: " + std::string(rest_.substr(0, 40)));
  }

  std::string_view rest_;
};

}  // namespace

Property ioregValue(std::string_view text) {
  Reader reader(text);
  Property property = reader.value();
  reader.end();
  return property;
}

PropertyMap ioregProperties(std::string_view text) {
  PropertyMap properties;
  while (!text.empty()) {
    std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    line.remove_prefix(std::min(line.find_first_not_of(" |"), line.size()));
    const auto assignment = line.find("\" = ");
    if (!line.starts_with('"') || assignment == std::string_view::npos) continue;
    const std::string key(line.substr(1, assignment - 1));
    properties[key] = ioregValue(line.substr(assignment + 4));
  }
  return properties;
}

}  // namespace embrix
