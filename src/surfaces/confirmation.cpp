#include "surfaces/confirmation.h"

#include <utility>

#include "model/calm_rule.h"

namespace embrix {

void Confirmation::ask(std::string question, std::optional<std::string> message,
                       std::string actionTitle, std::function<void()> action) {
  request_.set(Request{.id = CalmRule::freshID(),
                       .question = std::move(question),
                       .message = std::move(message),
                       .actionTitle = std::move(actionTitle),
                       .action = std::move(action)});
}

void Confirmation::answer(bool confirmed) {
  if (!*request_) return;
  const auto answered = request_.exchange(std::nullopt);
  if (confirmed && answered->action) answered->action();
}

void Confirmation::askOrAct(Confirmation* confirmation, std::string question,
                            std::optional<std::string> message, std::string actionTitle,
                            std::function<void()> action) {
  if (confirmation == nullptr) {
    action();
    return;
  }
  confirmation->ask(std::move(question), std::move(message), std::move(actionTitle),
                    std::move(action));
}

}  // namespace embrix
