#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <utility>

#include "host/native_host.h"
#include "hosts/macos/action_service.h"
#include "hosts/macos/application_icons.h"
#include "hosts/macos/cf_property.h"
#include "hosts/macos/control_center.h"
#include "hosts/macos/event_loop.h"
#include "hosts/macos/notifier.h"
#include "hosts/macos/process_control.h"
#include "hosts/macos/session_events.h"

namespace embrix {

Session nativeSession() {
  auto loop = std::make_unique<MacEventLoop>();
  auto events = std::make_unique<MacSessionEvents>(*loop);
  return {.loop = std::move(loop),
          .control = std::make_unique<MacProcessControl>(),
          .notifier = std::make_unique<MacNotifier>(),
          .events = std::move(events),
          .controls = std::make_unique<MacControlCenter>(),
          .actions = std::make_unique<MacActionService>(),
          // No window asks for them here yet.
          .desktop = absentSession(nullptr).desktop,
          .icons = std::make_unique<MacApplicationIcons>()};
}

std::optional<std::string> nativeIdentifier() {
  const CFBundleRef bundle = CFBundleGetMainBundle();
  const CFStringRef identifier = bundle == nullptr ? nullptr : CFBundleGetIdentifier(bundle);
  if (identifier == nullptr) return std::nullopt;
  return textOf(identifier);
}

}  // namespace embrix
