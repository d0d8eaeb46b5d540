#include "hosts/macos/action_service.h"

#include <memory>
#include <string>
#include <utility>
#include <variant>

#include "base/text.h"
#include "hosts/macos/embrix_actions.h"

namespace embrix {

namespace {

std::vector<PublishedAction>& published() {
  static std::vector<PublishedAction> actions;
  return actions;
}

const PublishedAction* actionAt(std::size_t index) {
  return index < published().size() ? &published()[index] : nullptr;
}

// The reply that is owed to a caller. It can be given once; a caller whose reply is never given is
// told so.
class OwedReply {
 public:
  OwedReply(void* context, embrix_action_reply reply) : context_(context), reply_(reply) {}
  OwedReply(const OwedReply&) = delete;
  OwedReply& operator=(const OwedReply&) = delete;
  ~OwedReply() { give(ActionError{"The action was given up."}); }

  void give(const ActionOutcome& outcome) {
    const embrix_action_reply reply = std::exchange(reply_, nullptr);
    if (reply == nullptr) return;
    embrix_action_outcome told{};
    std::string words;
    std::string text;
    if (const auto* error = std::get_if<ActionError>(&outcome)) {
      words = Text::repaired(error->text);
      told.error = words.c_str();
    } else {
      const auto& result = std::get<ActionResult>(outcome);
      words = Text::repaired(result.dialog);
      told.dialog = words.c_str();
      if (const auto* number = std::get_if<double>(&result.value)) told.number = *number;
      if (const auto* value = std::get_if<std::string>(&result.value)) {
        text = Text::repaired(*value);
        told.text = text.c_str();
      }
    }
    reply(context_, &told);
  }

 private:
  void* context_;
  embrix_action_reply reply_;
};

}  // namespace

MacActionService::~MacActionService() {
  published().clear();
}

void MacActionService::publish(std::vector<PublishedAction> actions) {
  published() = std::move(actions);
}

}  // namespace embrix

size_t embrix_action_count(void) {
  return embrix::published().size();
}

const char* embrix_action_name(size_t index) {
  const auto* action = embrix::actionAt(index);
  return action == nullptr ? nullptr : action->name.c_str();
}

const char* embrix_action_title(size_t index) {
  const auto* action = embrix::actionAt(index);
  return action == nullptr ? nullptr : action->title.c_str();
}

embrix_action_value embrix_action_value_of(size_t index) {
  const auto* action = embrix::actionAt(index);
  if (action == nullptr) return EMBRIX_ACTION_VALUE_NONE;
  switch (action->value) {
    case embrix::PublishedAction::Value::text:
      return EMBRIX_ACTION_VALUE_TEXT;
    case embrix::PublishedAction::Value::number:
      return EMBRIX_ACTION_VALUE_NUMBER;
    case embrix::PublishedAction::Value::none:
      break;
  }
  return EMBRIX_ACTION_VALUE_NONE;
}

void embrix_action_perform(size_t index, void* context, embrix_action_reply reply) {
  const auto owed = std::make_shared<embrix::OwedReply>(context, reply);
  const auto* action = embrix::actionAt(index);
  if (action == nullptr) return;
  action->perform([owed](const embrix::ActionOutcome& outcome) { owed->give(outcome); });
}
