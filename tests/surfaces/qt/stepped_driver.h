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

  void start() override {
    elapsed_ = 0;  // the toolkit counts from its start
    QAnimationDriver::start();
  }
  void advance() override {}
  qint64 elapsed() const override { return elapsed_; }

  // In frames of a display.
  void step(double seconds) {
    constexpr qint64 kFrame = 16;
    // What was started begins with a turn of the loop, and no time is lost by that.
    for (int turn = 0; turn < 3 && !isRunning(); ++turn) QCoreApplication::processEvents();
    auto left = static_cast<qint64>(seconds * 1000);
    while (left > 0) {
      QCoreApplication::processEvents();
      const qint64 frame = std::min(kFrame, left);
      left -= frame;
      if (!isRunning()) continue;
      elapsed_ += frame;
      advanceAnimation();
    }
  }

 private:
  qint64 elapsed_ = 0;
};

}  // namespace embrix
