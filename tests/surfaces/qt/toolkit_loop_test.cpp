#include "hosts/qt/toolkit_loop.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTimer>

#include <csignal>
#include <string>
#include <vector>

#include "hosts/linux/event_loop.h"

namespace embrix {
namespace {

class ToolkitLoopTest : public testing::Test {
 protected:
  auto note(std::string text) {
    return [this, text = std::move(text)] { log.push_back(text); };
  }

  LinuxEventLoop loop;
  Scheduler& scheduler = loop.scheduler();
  ToolkitLoop toolkit{loop};
  std::vector<std::string> log;
};

TEST_F(ToolkitLoopTest, WhatTheProgramAskedForComesAmongWhatTheToolkitDoes) {
  const Scheduled now = scheduler.after(0, note("now"));
  const Scheduled later = scheduler.after(0.03, note("later"));
  const Scheduled end = scheduler.after(0.06, [this] { loop.quit(); });
  QTimer::singleShot(15, note("toolkit"));
  toolkit.run();
  EXPECT_EQ(log, (std::vector<std::string>{"now", "toolkit", "later"}));
}

TEST_F(ToolkitLoopTest, WhatTheToolkitAsksTheSchedulerForComesInTime) {
  Scheduled asked;
  const Scheduled farAway = scheduler.after(600, note("never"));
  QTimer::singleShot(10, [&] {
    asked = scheduler.after(0.01, [&] {
      note("asked")();
      loop.quit();
    });
  });
  toolkit.run();
  EXPECT_EQ(log, (std::vector<std::string>{"asked"}));
}

TEST_F(ToolkitLoopTest, WorkInTheBackgroundComesBack) {
  const Scheduled work = scheduler.background(
      WorkPriority::utility, [] { return 42; },
      [&](int result) {
        log.push_back(std::to_string(result));
        loop.quit();
      });
  toolkit.run();
  EXPECT_EQ(log, (std::vector<std::string>{"42"}));
}

TEST_F(ToolkitLoopTest, TheEndIsToldHoweverItComes) {
  loop.onEnd(note("told"));
  QTimer::singleShot(5, [] { QCoreApplication::quit(); });
  toolkit.run();
  EXPECT_EQ(log, (std::vector<std::string>{"told"}));
  EXPECT_TRUE(loop.isOver());
}

TEST_F(ToolkitLoopTest, ASignalEndsIt) {
  loop.onEnd(note("told"));
  const Scheduled signal = scheduler.after(0.005, [] { ::raise(SIGTERM); });
  toolkit.run();
  EXPECT_EQ(log, (std::vector<std::string>{"told"}));
}

TEST_F(ToolkitLoopTest, AnEndBeforeTheBeginningIsAnEnd) {
  loop.quit();
  loop.onEnd(note("told"));
  toolkit.run();
  EXPECT_EQ(log, (std::vector<std::string>{"told"}));
}

}  // namespace
}  // namespace embrix
