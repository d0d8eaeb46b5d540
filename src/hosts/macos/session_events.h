// Sleep and wake as the workspace tells them, the end of the application or of the loop, and the
// notification "app.embrix.openConsole" of the application's own centre.
#pragma once

#include <vector>

#include "host/session_events.h"
#include "hosts/macos/cf_holder.h"
#include "hosts/macos/event_loop.h"

namespace embrix {

class MacSessionEvents final : public SessionEvents {
 public:
  // The loop outlives this.
  explicit MacSessionEvents(MacEventLoop& loop);
  ~MacSessionEvents() override;
  MacSessionEvents(const MacSessionEvents&) = delete;
  MacSessionEvents& operator=(const MacSessionEvents&) = delete;

  void listen(Listener listener) override { listener_ = std::move(listener); }

 private:
  Listener listener_;
  // Two of the workspace, then those of the application.
  std::vector<CfHolder<CFTypeRef>> observers_;
};

}  // namespace embrix
