#include "hosts/qt/toolkit_loop.h"

#include <utility>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>

namespace embrix {

ToolkitLoop::ToolkitLoop(EventLoop& loop) : loop_(loop), guest_(loop.guest()) {
  if (guest_ == nullptr) return;
  due_ = std::make_unique<QSocketNotifier>(guest_->descriptor(), QSocketNotifier::Read);
  connect(due_.get(), &QSocketNotifier::activated, this, &ToolkitLoop::turn);
  connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
          &ToolkitLoop::prepare);
}

void ToolkitLoop::prepare() {
  if (!guest_->prepare() || std::exchange(isTurning_, true)) return;
  QMetaObject::invokeMethod(
      this,
      [this] {
        isTurning_ = false;
        turn();
      },
      Qt::QueuedConnection);
}

void ToolkitLoop::turn() {
  guest_->turn();
  if (guest_->isOver()) QCoreApplication::quit();
}

void ToolkitLoop::run() {
  if (guest_ == nullptr || !guest_->isOver()) QCoreApplication::exec();
  loop_.quit();
  if (guest_ != nullptr) guest_->end();
}

}  // namespace embrix
