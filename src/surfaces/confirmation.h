// The question that every destructive action asks first. Each surface owns one of these; at most
// one question is pending. An unanswered one goes with its surface, and nothing happens. Main
// thread only.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/observed.h"

namespace embrix {

class Confirmation {
 public:
  struct Request {
    std::string id;  // a UUID, another for each question
    std::string question;
    std::optional<std::string> message;
    std::string actionTitle;
    std::function<void()> action;

    // Two requests are the same when they are one.
    bool operator==(const Request& other) const { return id == other.id; }
  };

  const Observed<std::optional<Request>>& request() const { return request_; }

  // A pending question is replaced.
  void ask(std::string question, std::optional<std::string> message, std::string actionTitle,
           std::function<void()> action);

  // Clears the question, then acts on a yes. Nothing without a question.
  void answer(bool confirmed);

  // Asks where there is somebody to ask; else acts at once.
  static void askOrAct(Confirmation* confirmation, std::string question,
                       std::optional<std::string> message, std::string actionTitle,
                       std::function<void()> action);

 private:
  Observed<std::optional<Request>> request_;
};

}  // namespace embrix
