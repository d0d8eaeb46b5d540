// Actions of the program that other programs may ask for by name: the desktop's shortcuts, scripts,
// an assistant. Main thread only.
#pragma once

#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace embrix {

struct ActionResult {
  std::variant<std::monostate, std::string, double> value;
  std::string dialog;  // a sentence to be spoken or shown; may be empty

  bool operator==(const ActionResult&) const = default;
};

// Why an action could not be done, as a sentence for the user.
struct ActionError {
  std::string text;

  bool operator==(const ActionError&) const = default;
};

using ActionOutcome = std::variant<ActionResult, ActionError>;
using ActionReply = std::function<void(ActionOutcome)>;

struct PublishedAction {
  enum class Value { none, text, number };

  std::string name;   // an identifier in upper camel case
  std::string title;  // as the user reads it
  Value value = Value::none;
  std::function<void(ActionReply)> perform;  // replies once, at once or later
};

class ActionService {
 public:
  virtual ~ActionService() = default;

  // The only actions from now on. Where there is nobody to offer them to, nothing happens.
  virtual void publish(std::vector<PublishedAction> actions) = 0;
};

}  // namespace embrix
