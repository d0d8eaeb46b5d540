#include "hosts/linux/notifier.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "base/text.h"

namespace embrix {

namespace {

constexpr const char* kService = "org.freedesktop.Notifications";
constexpr const char* kPath = "/org/freedesktop/Notifications";
constexpr const char* kProgramName = "Embrix";
constexpr const char* kDesktopEntry = "app.embrix.Embrix";

// The name that sound themes have for what a message that just arrived sounds like.
constexpr const char* kDefaultSound = "message-new-instant";

constexpr double kTimeoutSeconds = 20;
// The program posts one or two an hour; more than these wait for nobody.
constexpr std::size_t kMostWaiting = 32;
constexpr std::size_t kMostPosted = 64;

// The service's word for a notification that went by itself. Some desktops keep such a one in a
// list, where its buttons still work.
constexpr std::uint32_t kExpired = 1;

// Markup that shows the text as it stands.
std::string escaped(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (const char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

bool isError(sd_bus_message* answer) {
  return sd_bus_message_is_method_error(answer, nullptr) > 0;
}

}  // namespace

DesktopNotifier::DesktopNotifier(std::shared_ptr<BusConnection> session)
    : session_(std::move(session)),
      service_(*session_, kService, [this](sd_bus*) { startOver(); }) {
  session_->onDown([this] {
    startOver();
    waiting_.clear();
    invoked_.reset();
    closed_.reset();
  });
  session_->onUp([this](sd_bus* bus) { listen(bus); });
}

void DesktopNotifier::install(std::vector<NotificationCategory> categories, Respond respond) {
  categories_ = std::move(categories);
  respond_ = std::move(respond);
}

void DesktopNotifier::post(const Notification& notification) {
  if (waiting_.size() == kMostWaiting) waiting_.pop_front();
  waiting_.push_back(notification);
  if (!call_) next();
}

// Only while no call runs.
void DesktopNotifier::next() {
  if (waiting_.empty()) return;
  sd_bus* const bus = session_->bus();
  const bool isOnItsWay =
      bus != nullptr && (capabilities_ ? send(bus, waiting_.front()) : askCapabilities(bus));
  if (!isOnItsWay) waiting_.clear();
}

bool DesktopNotifier::askCapabilities(sd_bus* bus) {
  const BusMessage call = newBusCall(bus, kService, kPath, kService, "GetCapabilities");
  if (!call) return false;
  call_ = sendBusCall(bus, call.get(), kTimeoutSeconds, [this](sd_bus_message* answer) {
    Capabilities capabilities;
    bool isList =
        !isError(answer) && sd_bus_message_enter_container(answer, SD_BUS_TYPE_ARRAY, "s") > 0;
    const char* word = nullptr;
    while (isList && sd_bus_message_read(answer, "s", &word) > 0) {
      capabilities.actions |= std::string_view(word) == "actions";
      capabilities.bodyMarkup |= std::string_view(word) == "body-markup";
    }
    call_.reset();
    if (!isList) {
      waiting_.clear();
      return;
    }
    capabilities_ = capabilities;
    next();
  });
  return call_ != nullptr;
}

bool DesktopNotifier::send(sd_bus* bus, const Notification& notification) {
  const BusMessage call = callFor(bus, notification);
  if (!call) return false;
  call_ = sendBusCall(bus, call.get(), kTimeoutSeconds,
                      [this, sent = notification](sd_bus_message* answer) {
                        std::uint32_t number = 0;
                        if (!isError(answer) && sd_bus_message_read(answer, "u", &number) > 0) {
                          remember(number, sent);
                        }
                        call_.reset();
                        next();
                      });
  if (call_) waiting_.pop_front();
  return call_ != nullptr;
}

BusMessage DesktopNotifier::callFor(sd_bus* bus, const Notification& notification) const {
  BusMessage call = newBusCall(bus, kService, kPath, kService, "Notify");
  if (!call) return nullptr;
  const auto former = std::find_if(posted_.begin(), posted_.end(), [&](const Posted& posted) {
    return posted.notification.identifier == notification.identifier;
  });
  const std::uint32_t replaced = former == posted_.end() ? 0 : former->number;
  const std::string title = Text::repaired(notification.title);
  const std::string plain = Text::repaired(notification.body);
  const std::string body = capabilities_->bodyMarkup ? escaped(plain) : plain;
  sd_bus_message_append(call.get(), "susss", kProgramName, replaced, "", title.c_str(),
                        body.c_str());

  sd_bus_message_open_container(call.get(), SD_BUS_TYPE_ARRAY, "s");
  if (capabilities_->actions) {
    sd_bus_message_append(call.get(), "ss", kDefaultAction, "Open Embrix");
    if (const auto* category = categoryOf(notification)) {
      for (const NotificationAction& action : category->actions) {
        sd_bus_message_append(call.get(), "ss", action.identifier.c_str(), action.title.c_str());
      }
    }
  }
  sd_bus_message_close_container(call.get());

  sd_bus_message_append(call.get(), "a{sv}", 2, "sound-name", "s", kDefaultSound, "desktop-entry",
                        "s", kDesktopEntry);
  const std::int32_t untilTheServiceSays = -1;
  if (sd_bus_message_append(call.get(), "i", untilTheServiceSays) < 0) return nullptr;
  return call;
}

const NotificationCategory* DesktopNotifier::categoryOf(const Notification& notification) const {
  const auto found = std::find_if(
      categories_.begin(), categories_.end(),
      [&](const NotificationCategory& each) { return each.identifier == notification.category; });
  return found == categories_.end() ? nullptr : &*found;
}

void DesktopNotifier::remember(std::uint32_t number, const Notification& notification) {
  std::erase_if(posted_, [&](const Posted& posted) {
    return posted.number == number || posted.notification.identifier == notification.identifier;
  });
  if (posted_.size() == kMostPosted) posted_.erase(posted_.begin());
  posted_.push_back({number, notification});
}

// Another service knows nothing of what the former one was told. A call that the former one has not
// answered ends with an error.
void DesktopNotifier::startOver() {
  capabilities_.reset();
  posted_.clear();
}

void DesktopNotifier::listen(sd_bus* bus) {
  const BusSignal invoked = {kService, kPath, kService, "ActionInvoked"};
  invoked_ =
      onBusSignal(bus, invoked, [this](sd_bus_message* message) { actionWasInvoked(message); });
  const BusSignal closed = {kService, kPath, kService, "NotificationClosed"};
  closed_ = onBusSignal(bus, closed, [this](sd_bus_message* message) { wasClosed(message); });
}

void DesktopNotifier::actionWasInvoked(sd_bus_message* message) {
  std::uint32_t number = 0;
  const char* action = nullptr;
  if (!service_.sent(message) || sd_bus_message_read(message, "us", &number, &action) <= 0) return;
  const auto answered = std::find_if(posted_.begin(), posted_.end(),
                                     [&](const Posted& posted) { return posted.number == number; });
  if (answered == posted_.end() || !respond_) return;
  const auto group = answered->notification.group;
  respond_({.action = action, .group = group});
}

void DesktopNotifier::wasClosed(sd_bus_message* message) {
  std::uint32_t number = 0;
  std::uint32_t reason = 0;
  if (!service_.sent(message) || sd_bus_message_read(message, "uu", &number, &reason) <= 0 ||
      reason == kExpired) {
    return;
  }
  std::erase_if(posted_, [&](const Posted& posted) { return posted.number == number; });
}

}  // namespace embrix
