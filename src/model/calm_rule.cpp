#include "model/calm_rule.h"

#include <array>
#include <cstdint>
#include <random>

#include <fmt/format.h>

#include "base/json.h"

namespace embrix {

namespace {

using Condition = CalmRule::Condition;

constexpr std::array kConditions = {Condition::onBattery, Condition::whenHot, Condition::always};

bool isUUID(std::string_view text) {
  constexpr std::string_view kForm = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
  if (text.size() != kForm.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const bool isHex = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
    if (kForm[i] == '-' ? c != '-' : !isHex) return false;
  }
  return true;
}

std::optional<std::string> textAt(const Json& object, std::string_view key) {
  const Json* value = jsonAt(object, key);
  return value == nullptr ? std::nullopt : jsonText(*value);
}

std::optional<CalmRule> decodeRule(const Json& json) {
  auto id = textAt(json, "id");
  auto name = textAt(json, "name");
  const auto word = textAt(json, "condition");
  if (!id || !isUUID(*id) || !name || !word) return std::nullopt;
  const auto condition = CalmRule::conditionOf(*word);
  if (!condition) return std::nullopt;
  return CalmRule{.id = std::move(*id), .name = std::move(*name), .condition = *condition};
}

}  // namespace

std::string_view CalmRule::conditionWord(Condition condition) {
  switch (condition) {
    case Condition::onBattery:
      return "onBattery";
    case Condition::whenHot:
      return "whenHot";
    case Condition::always:
      return "always";
  }
  return "always";
}

std::optional<Condition> CalmRule::conditionOf(std::string_view word) {
  for (const Condition condition : kConditions) {
    if (conditionWord(condition) == word) return condition;
  }
  return std::nullopt;
}

std::string CalmRule::freshID() {
  std::random_device random;
  std::array<std::uint32_t, 4> words{};
  for (std::uint32_t& word : words) word = random();
  words[1] = (words[1] & 0xFFFF0FFFU) | 0x00004000U;  // version 4: random
  words[2] = (words[2] & 0x3FFFFFFFU) | 0x80000000U;  // the usual variant
  return fmt::format("{:08X}-{:04X}-{:04X}-{:04X}-{:04X}{:08X}", words[0], words[1] >> 16,
                     words[1] & 0xFFFFU, words[2] >> 16, words[2] & 0xFFFFU, words[3]);
}

std::string CalmRule::encode(const std::vector<CalmRule>& rules) {
  Json array = Json::array();
  for (const CalmRule& rule : rules) {
    array.push_back({{"id", rule.id},
                     {"name", rule.name},
                     {"condition", std::string(conditionWord(rule.condition))}});
  }
  return dumpJson(array);
}

std::vector<CalmRule> CalmRule::decode(std::string_view json) {
  const auto array = parseJson(json);
  if (!array || !array->is_array()) return {};
  std::vector<CalmRule> rules;
  rules.reserve(array->size());
  for (const Json& element : *array) {
    auto rule = decodeRule(element);
    if (!rule) return {};
    rules.push_back(std::move(*rule));
  }
  return rules;
}

}  // namespace embrix
