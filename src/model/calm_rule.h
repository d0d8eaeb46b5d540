// What the user has said once and for all about calming an app. Plain values; any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace embrix {

struct CalmRule {
  enum class Condition { onBattery, whenHot, always };

  std::string id;    // a UUID in capitals; what the rule is known by in lists
  std::string name;  // of an app or of a process, compared without regard to case
  Condition condition = Condition::always;

  bool operator==(const CalmRule&) const = default;

  static std::string_view conditionWord(Condition condition);
  static std::optional<Condition> conditionOf(std::string_view word);

  // A new random one at each call.
  static std::string freshID();

  // The rules as a JSON array, in order.
  static std::string encode(const std::vector<CalmRule>& rules);

  // Empty unless every rule of the array has its three fields as they must be; further fields are
  // passed over.
  static std::vector<CalmRule> decode(std::string_view json);
};

}  // namespace embrix
