#include "hosts/linux/action_service.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>
#include <variant>

#include "base/text.h"
#include "hosts/linux/program_object.h"

namespace embrix {

namespace {

constexpr const char* kInterface = "app.embrix.Shortcuts";
constexpr const char* kFailed = "app.embrix.Error.Failed";

using Value = PublishedAction::Value;

sd_bus_vtable method(const PublishedAction& action, sd_bus_message_handler_t perform) {
  const char* const name = action.name.c_str();
  switch (action.value) {
    case Value::text:
      return SD_BUS_METHOD_WITH_NAMES(name, "", , "ss", SD_BUS_PARAM(value) SD_BUS_PARAM(dialog),
                                      perform, SD_BUS_VTABLE_UNPRIVILEGED);
    case Value::number:
      return SD_BUS_METHOD_WITH_NAMES(name, "", , "ds", SD_BUS_PARAM(value) SD_BUS_PARAM(dialog),
                                      perform, SD_BUS_VTABLE_UNPRIVILEGED);
    case Value::none:
      break;
  }
  return SD_BUS_METHOD_WITH_NAMES(name, "", , "s", SD_BUS_PARAM(dialog), perform,
                                  SD_BUS_VTABLE_UNPRIVILEGED);
}

// The answer that is owed to a caller. It can be given once; a caller whose answer is never given
// is told so.
class OwedAnswer {
 public:
  OwedAnswer(sd_bus_message* call, Value value) : call_(sd_bus_message_ref(call)), value_(value) {}
  OwedAnswer(const OwedAnswer&) = delete;
  OwedAnswer& operator=(const OwedAnswer&) = delete;
  ~OwedAnswer() { give(ActionError{"The action was given up."}); }

  void give(const ActionOutcome& outcome) {
    const BusMessage call = std::move(call_);
    if (!call) return;
    if (const auto* error = std::get_if<ActionError>(&outcome)) {
      fail(call.get(), error->text);
    } else if (!answer(call.get(), std::get<ActionResult>(outcome))) {
      fail(call.get(), "The action gave a value of another kind than it should.");
    }
  }

 private:
  static void fail(sd_bus_message* call, const std::string& text) {
    const std::string told = Text::repaired(text);
    sd_bus_reply_method_errorf(call, kFailed, "%s", told.c_str());
  }

  // False when the value is none of the kind that was promised.
  bool answer(sd_bus_message* call, const ActionResult& result) const {
    const std::string dialog = Text::repaired(result.dialog);
    const auto* text = std::get_if<std::string>(&result.value);
    const auto* number = std::get_if<double>(&result.value);
    if (value_ == Value::text && text != nullptr) {
      const std::string value = Text::repaired(*text);
      sd_bus_reply_method_return(call, "ss", value.c_str(), dialog.c_str());
    } else if (value_ == Value::number && number != nullptr) {
      sd_bus_reply_method_return(call, "ds", *number, dialog.c_str());
    } else if (value_ == Value::none && text == nullptr && number == nullptr) {
      sd_bus_reply_method_return(call, "s", dialog.c_str());
    } else {
      return false;
    }
    return true;
  }

  BusMessage call_;
  Value value_;
};

}  // namespace

BusActionService::BusActionService(std::shared_ptr<BusConnection> session)
    : session_(std::move(session)) {
  session_->onDown([this] {
    object_.reset();
    name_.reset();
  });
  session_->onUp([this](sd_bus* bus) { offer(bus); });
}

void BusActionService::publish(std::vector<PublishedAction> actions) {
  object_.reset();
  actions_ = std::move(actions);
  members_.clear();
  members_.push_back(SD_BUS_VTABLE_START(0));
  for (const PublishedAction& action : actions_) members_.push_back(method(action, perform));
  members_.push_back(SD_BUS_VTABLE_END);
  // A connection that begins here offers them by itself.
  sd_bus* const bus = session_->bus();
  if (bus != nullptr && !object_) offer(bus);
}

void BusActionService::offer(sd_bus* bus) {
  if (actions_.empty()) return;
  sd_bus_slot* slot = nullptr;
  sd_bus_add_object_vtable(bus, &slot, kProgramObject, kInterface, members_.data(), this);
  object_.reset(slot);
  if (name_) return;
  // A second program of this name, one with other records for instance, has its turn when the first
  // one ends.
  slot = nullptr;
  sd_bus_request_name_async(
      bus, &slot, kProgramBusName, SD_BUS_NAME_QUEUE,
      [](sd_bus_message*, void*, sd_bus_error*) { return 0; }, nullptr);
  name_.reset(slot);
}

int BusActionService::perform(sd_bus_message* call, void* self, sd_bus_error*) {
  const auto* service = static_cast<BusActionService*>(self);
  const char* const member = sd_bus_message_get_member(call);
  const auto action =
      std::find_if(service->actions_.begin(), service->actions_.end(),
                   [&](const PublishedAction& each) { return each.name == member; });
  if (action == service->actions_.end()) return 0;
  const auto owed = std::make_shared<OwedAnswer>(call, action->value);
  action->perform([owed](const ActionOutcome& outcome) { owed->give(outcome); });
  return 1;
}

}  // namespace embrix
