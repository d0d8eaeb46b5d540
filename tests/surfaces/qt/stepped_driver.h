// Animations whose time passes only when the test says so.
#pragma once

#include <algorithm>

#include <QAnimationDriver>
#include <QCoreApplication>

namespace embrix {

class SteppedDriver final : public QAnimationDriver {
 public:
  SteppedDriver() { install(); }
  ~SteppedDriver() override { uninstall(); }

  void advance() override {}
  qint64 elapsed() const override { return elapsed_; }

  // In frames of a display.
  void step(double seconds) {
    constexpr int kFrame = 16;
    const qint64 end = elapsed_ + static_cast<qint64>(seconds * 1000);
    while (elapsed_ < end) {
      QCoreApplication::processEvents();  // what was started begins with a turn of the loop
      elapsed_ = std::min(elapsed_ + kFrame, end);
      if (isRunning()) advanceAnimation();
    }
  }

 private:
  qint64 elapsed_ = 0;
};

}  // namespace embrix
