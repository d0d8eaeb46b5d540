#include <cerrno>
#include <utility>

#include "host/session.h"

namespace embrix {

namespace {

class AbsentProcessControl final : public ProcessControl {
 public:
  int calm(const ProcessIdentity&) override { return ESRCH; }
  int restore(const ProcessIdentity&) override { return ESRCH; }
  int terminate(const ProcessIdentity&) override { return ESRCH; }
};

class AbsentNotifier final : public Notifier {
 public:
  void install(std::vector<NotificationCategory>, Respond) override {}
  void post(const Notification&) override {}
};

class AbsentSessionEvents final : public SessionEvents {
 public:
  void listen(Listener) override {}
};

class AbsentControlCenter final : public ControlCenter {
 public:
  void reloadAllControls() override {}
};

class AbsentActionService final : public ActionService {
 public:
  void publish(std::vector<PublishedAction>) override {}
};

class AbsentDesktopFacts final : public DesktopFacts {
 public:
  std::optional<bool> prefersDark() override { return std::nullopt; }
  bool reducesMotion() override { return false; }
  std::optional<double> idleSeconds() override { return std::nullopt; }
  void onChange(std::function<void()>) override {}
};

class AbsentApplicationIcons final : public ApplicationIcons {
 public:
  std::optional<ApplicationIcon> iconOf(const std::string&) override { return std::nullopt; }
};

}  // namespace

Session absentSession(std::unique_ptr<EventLoop> loop) {
  return {.loop = std::move(loop),
          .control = std::make_unique<AbsentProcessControl>(),
          .notifier = std::make_unique<AbsentNotifier>(),
          .events = std::make_unique<AbsentSessionEvents>(),
          .controls = std::make_unique<AbsentControlCenter>(),
          .actions = std::make_unique<AbsentActionService>(),
          .desktop = std::make_unique<AbsentDesktopFacts>(),
          .icons = std::make_unique<AbsentApplicationIcons>()};
}

}  // namespace embrix
