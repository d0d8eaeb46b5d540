// The window of the popover. Its content is made when it opens and gone when it closes, so that a
// closed popover costs nothing. Main thread only.
#pragma once

#include <memory>
#include <optional>

#include <QPoint>
#include <QQuickItem>
#include <QQuickWindow>

#include "surfaces/qt/popover_view_model.h"
#include "surfaces/qt/surface_engine.h"

namespace embrix {

class PopoverWindow final : public QObject {
  Q_OBJECT

 public:
  enum class Form {
    panel,    // hangs below the menu bar item and goes when something else is clicked
    window,   // a window of its own, on a desktop without a place for the item
    picture,  // to be drawn off screen: as high as its content, whatever the screen
  };

  // All outlive this.
  PopoverWindow(SurfaceEngine& engine, PowerModel& model, Scheduler& scheduler,
                DesktopActions desktop, Form form);
  ~PopoverWindow() override;

  // From the next time on that it opens.
  void setForm(Form form) { nextForm_ = form; }

  // Below (or above, at the bottom of the screen) that point; without one, in the corner where menu
  // bar items stand.
  void open(std::optional<QPoint> anchor);
  void close();
  bool isOpen() const { return content_ != nullptr; }

  // The panel was closed so short a while ago that the click which closed it is still on its way.
  bool wasJustClosed() const;

  QQuickWindow& window() { return window_; }

 signals:
  void closed();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Content {
    PopoverViewModel viewModel;
    std::unique_ptr<QQuickItem> panel;
  };

  void fit();
  void place();

  SurfaceEngine& engine_;
  PowerModel& model_;
  Scheduler& scheduler_;
  DesktopActions desktop_;
  Form form_;
  Form nextForm_;
  QQuickWindow window_;
  std::unique_ptr<Content> content_;
  std::optional<QPoint> anchor_;
  double closedAt_ = -1;  // uptime
};

}  // namespace embrix
