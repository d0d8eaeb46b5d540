#include "surfaces/qt/popover_window.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>

namespace embrix {

namespace {

constexpr int kWidth = 380;
constexpr int kGap = 8;              // between the panel and what it hangs from
constexpr double kClickTime = 0.25;  // seconds

Qt::WindowFlags flagsOf(PopoverWindow::Form form) {
  if (form == PopoverWindow::Form::window) return Qt::Window;
  return Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;
}

}  // namespace

PopoverWindow::PopoverWindow(SurfaceEngine& engine, PowerModel& model, Scheduler& scheduler,
                             DesktopActions desktop, Form form)
    : engine_(engine),
      model_(model),
      scheduler_(scheduler),
      desktop_(std::move(desktop)),
      form_(form),
      nextForm_(form) {
  window_.setTitle(QStringLiteral("Embrix"));
  window_.installEventFilter(this);
  desktop_.dismiss = [this] {
    // A window of its own is closed by its user alone: nothing else would bring it back.
    if (form_ != Form::window) close();
  };
}

PopoverWindow::~PopoverWindow() {
  window_.removeEventFilter(this);
}

void PopoverWindow::open(std::optional<QPoint> anchor) {
  anchor_ = anchor;
  if (isOpen()) {
    window_.raise();
  } else {
    form_ = nextForm_;
    window_.setFlags(flagsOf(form_));
    content_.reset(new Content{.viewModel = {model_, desktop_}, .panel = nullptr});
    content_->panel = engine_.make(
        QStringLiteral("PopoverPanel"),
        {{QStringLiteral("viewModel"), QVariant::fromValue<QObject*>(&content_->viewModel)}});
    QQuickItem* panel = content_->panel.get();
    if (panel == nullptr) {
      content_.reset();
      return;
    }
    panel->setParentItem(window_.contentItem());
    connect(panel, &QQuickItem::implicitHeightChanged, this, &PopoverWindow::fit);
    window_.setColor(engine_.values().palette().value(QStringLiteral("ground")).value<QColor>());
    fit();
    panel->forceActiveFocus();
  }
  window_.show();
  window_.requestActivate();
}

void PopoverWindow::close() {
  if (!isOpen()) return;
  closedAt_ = scheduler_.uptime();
  window_.hide();
  // Whoever asked may stand inside of the content.
  QTimer::singleShot(0, this, [content = std::shared_ptr<Content>(std::move(content_))] {});
  emit closed();
}

bool PopoverWindow::wasJustClosed() const {
  return closedAt_ >= 0 && scheduler_.uptime() - closedAt_ < kClickTime;
}

void PopoverWindow::fit() {
  if (!isOpen() || content_->panel == nullptr) return;
  QQuickItem& panel = *content_->panel;
  const QScreen* screen = window_.screen();
  if (form_ != Form::picture && screen != nullptr) {
    panel.setProperty("maximumHeight", screen->availableSize().height() - 2 * kGap);
  }
  const int height = static_cast<int>(std::ceil(panel.implicitHeight()));
  panel.setSize(QSizeF(kWidth, height));
  window_.setMinimumSize(QSize(kWidth, height));
  window_.setMaximumSize(QSize(kWidth, height));
  window_.resize(kWidth, height);
  if (form_ == Form::panel) place();
}

void PopoverWindow::place() {
  const QScreen* screen = anchor_ ? QGuiApplication::screenAt(*anchor_) : nullptr;
  if (screen == nullptr) screen = window_.screen();
  if (screen == nullptr) return;
  const QRect room = screen->availableGeometry().adjusted(kGap, kGap, -kGap, -kGap);
  const QPoint from = anchor_.value_or(room.topRight());
  const int furthest = std::max(room.left(), room.right() - kWidth + 1);
  const int x = std::clamp(from.x() - kWidth / 2, room.left(), furthest);
  const bool isBelow = from.y() < room.center().y();
  const int y = isBelow ? std::max(room.top(), from.y() + kGap)
                        : std::min(room.bottom() + 1, from.y() - kGap) - window_.height();
  window_.setPosition(x, std::max(room.top(), y));
}

bool PopoverWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Close) {
    close();
    event->accept();
    return true;
  }
  // A panel is left by a click elsewhere.
  if (event->type() == QEvent::FocusOut && form_ == Form::panel &&
      static_cast<QFocusEvent*>(event)->reason() == Qt::ActiveWindowFocusReason) {
    QTimer::singleShot(0, this, [this] {
      if (!window_.isActive()) close();
    });
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace embrix
