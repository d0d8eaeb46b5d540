#include "model/notification_router.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "fakes/scripted_notifier.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class NotificationRouterTest : public testing::Test {
 protected:
  NotificationRouterTest() {
    router.install([this](NotificationRouter::Action action, const std::string& group) {
      handled.emplace_back(std::string(NotificationRouter::actionWord(action)), group);
    });
  }

  ScriptedNotifier notifier;
  NotificationRouter router{notifier};
  std::vector<std::pair<std::string, std::string>> handled;
};

TEST_F(NotificationRouterTest, ThereIsOneCategoryWithThreeButtons) {
  ASSERT_EQ(notifier.categories.size(), 1U);
  EXPECT_EQ(notifier.categories[0],
            (NotificationCategory{
                .identifier = "hot-app",
                .actions = {{.identifier = "calm", .title = "Calm (efficiency cores)"},
                            {.identifier = "stop", .title = "Stop", .isDestructive = true},
                            {.identifier = "snooze", .title = "Snooze 1 hour"}}}));
}

TEST_F(NotificationRouterTest, ButtonsAndTheNotificationItselfReachTheHandler) {
  notifier.respond({.action = "calm", .group = "a"});
  notifier.respond({.action = "stop", .group = "b"});
  notifier.respond({.action = "snooze", .group = "c"});
  notifier.respond({.action = "open", .group = "d"});
  notifier.respond({.action = kDefaultAction, .group = "e"});
  EXPECT_THAT(handled, ElementsAre(Pair("calm", "a"), Pair("stop", "b"), Pair("snooze", "c"),
                                   Pair("open", "d"), Pair("open", "e")));
}

TEST_F(NotificationRouterTest, WithoutAGroupTheKeyIsEmpty) {
  notifier.respond({.action = "calm", .group = {}});
  EXPECT_THAT(handled, ElementsAre(Pair("calm", "")));
}

TEST_F(NotificationRouterTest, ADismissalAndUnknownActionsAreNothing) {
  notifier.respond({.action = "dismiss", .group = "a"});
  notifier.respond({.action = "", .group = "a"});
  notifier.respond({.action = "Calm", .group = "a"});
  EXPECT_THAT(handled, IsEmpty());
}

}  // namespace
}  // namespace embrix
