// The menu-bar life of the program: its item, its popover, and what it does once at the start. Main
// thread only.
#pragma once

#include <memory>
#include <optional>

#include "hosts/qt/toolkit_loop.h"
#include "surfaces/first_appearance.h"
#include "surfaces/qt/menu_bar_item.h"
#include "surfaces/qt/popover_window.h"
#include "surfaces/window_module.h"

namespace embrix {

class MenuBarRun {
 public:
  // The toolkit's application stands already.
  explicit MenuBarRun(const WindowRun& run);
  MenuBarRun(const MenuBarRun&) = delete;
  MenuBarRun& operator=(const MenuBarRun&) = delete;

  // Until the program is told to end.
  void run();

 private:
  DesktopActions actions();
  void desktopChanged();
  // False on a desktop without a place for the item.
  bool takePlace();
  void togglePopover(std::optional<QPoint> anchor);

  const WindowRun& run_;
  Scheduler& scheduler_;
  SurfaceEngine engine_;
  ToolkitLoop loop_;
  PopoverWindow popover_;
  std::unique_ptr<MenuBarItem> item_;  // null while the desktop has no place for it
  bool isWaitingForPlace_ = false;
  std::optional<FirstAppearance> firstAppearance_;
};

}  // namespace embrix
