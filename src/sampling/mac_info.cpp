#include "sampling/mac_info.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string_view>

#include <fmt/format.h>

#include "base/text.h"

namespace embrix {

namespace {

std::string textOr(const std::optional<std::string>& text, std::string_view otherwise) {
  return text && !text->empty() ? Text::repaired(*text) : std::string(otherwise);
}

// Both characters of `around` taken off as long as one stands at either end.
std::string_view trimmed(std::string_view text, std::string_view around) {
  const auto first = text.find_first_not_of(around);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(around) - first + 1);
}

std::string_view firstPiece(std::string_view text, char separator) {
  const auto start = text.find_first_not_of(separator);
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find(separator, start) - start);
}

}  // namespace

MacInfo MacInfo::from(const MachineFacts& facts) {
  MacInfo info;
  info.name = textOr(facts.productName, info.name);
  info.chip = textOr(facts.chip, info.chip);
  info.performanceCores = std::max(facts.performanceCores.value_or(0), 0);
  info.efficiencyCores = std::max(facts.efficiencyCores.value_or(0), 0);
  info.memoryGB = static_cast<int>(
      std::min<std::uint64_t>(facts.memoryBytes >> 30, std::numeric_limits<int>::max()));
  info.osVersion = fmt::format("{} {}.{}", facts.systemName, facts.systemMajor, facts.systemMinor);
  if (facts.systemPatch >= 1) info.osVersion += fmt::format(".{}", facts.systemPatch);
  info.model = textOr(facts.model, "");
  return info;
}

std::string MacInfo::shortName() const {
  const auto parenthesis = name.find('(');
  if (parenthesis == std::string::npos) return name;
  const std::string_view whole = name;
  const std::string_view base = trimmed(whole.substr(0, parenthesis), " \t");
  const std::string_view piece = trimmed(firstPiece(whole.substr(parenthesis + 1), ','), ") ");
  if (piece.find("inch") == std::string_view::npos) return std::string(base);
  return fmt::format("{} {}", base, piece);
}

}  // namespace embrix
