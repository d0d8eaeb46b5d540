// The popover as it is seen, clicked and reached by the keyboard.

#include <gtest/gtest.h>

#include <cmath>

#include <QAccessible>
#include <QGuiApplication>
#include <QQuickItem>
#include <QtTest/QTest>

#include "stepped_driver.h"
#include "surfaces/qt/popover_window.h"
#include "worlds/popover_world.h"

namespace embrix {
namespace {

class PopoverViewTest : public testing::Test {
 protected:
  PopoverViewTest() {
    engine.values().motion().setFrozen(true);
    world.defaults.set(SettingKeys::kAutomaticHeat, true);
    world.start();
  }

  void open(PopoverWindow::Form form = PopoverWindow::Form::panel) {
    DesktopActions actions;
    actions.openDashboard = [this](DashboardSection section) {
      log.push_back("open " + std::string(dashboardSectionWord(section)));
    };
    actions.openURL = [this](const std::string& url) { log.push_back("url " + url); };
    actions.copy = [this](const std::string& text) { log.push_back("copy " + text); };
    actions.terminate = [this] { log.push_back("terminate"); };
    popover.emplace(engine, world.model(), world.scheduler, actions, form);
    popover->open(std::nullopt);
    settle();
  }
  void take(Frame frame) {
    world.bringToLife(frame);
    world.take(std::move(frame));
    settle();
  }
  static void settle() {
    for (int i = 0; i < 5; ++i) {
      QGuiApplication::processEvents();
      QGuiApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
  }

  QQuickItem* find(const QString& name) { return qobject_cast<QQuickItem*>(object(name)); }
  // Something of that name that can be seen.
  bool sees(const QString& name) {
    const QQuickItem* item = find(name);
    return item != nullptr && item->isVisible();
  }
  // Below what is drawn in the window; a menu belongs to an item without being drawn in it.
  QObject* object(const QString& name, QQuickItem* root = nullptr) {
    if (root == nullptr) root = popover->window().contentItem();
    if (root->objectName() == name) return root;
    if (auto* owned = root->findChild<QObject*>(name)) return owned;
    for (QQuickItem* child : root->childItems()) {
      if (QObject* found = object(name, child)) return found;
    }
    return nullptr;
  }
  void click(const QString& name, Qt::MouseButton button = Qt::LeftButton) {
    QQuickItem* item = find(name);
    ASSERT_NE(item, nullptr) << name.toStdString();
    const QPointF middle = item->mapToScene({item->width() / 2, item->height() / 2});
    QTest::mouseClick(&popover->window(), button, Qt::NoModifier, middle.toPoint());
    settle();
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&popover->window(), key, modifiers);
    settle();
  }
  // All texts that can be seen, in the order of the items.
  QStringList texts(QQuickItem* root = nullptr) {
    QStringList result;
    if (root == nullptr) root = popover->window().contentItem();
    if (!root->isVisible()) return result;
    if (root->inherits("QQuickText")) {
      const QString text = root->property("text").toString();
      if (!text.isEmpty()) result.push_back(text);
    }
    for (QQuickItem* child : root->childItems()) result += texts(child);
    return result;
  }
  QStringList menuLabels(const QString& name) {
    QStringList labels;
    QObject* menu = object(name);
    if (menu == nullptr) return labels;
    for (int i = 0; i < menu->property("count").toInt(); ++i) {
      QQuickItem* item = nullptr;
      QMetaObject::invokeMethod(menu, "itemAt", Q_RETURN_ARG(QQuickItem*, item), Q_ARG(int, i));
      labels.push_back(item == nullptr ? QString() : item->property("text").toString());
    }
    return labels;
  }
  bool isMenuOpen(const QString& name) {
    const QObject* menu = object(name);
    return menu != nullptr && menu->property("opened").toBool();
  }
  int ended() const {
    int count = 0;
    for (const std::string& call : world.control.log)
      count += call.starts_with("terminate") ? 1 : 0;
    return count;
  }
  QString stopButton() {
    return QStringLiteral("stop-") +
           QString::fromStdString(world.model().forgottenRows().at(0).id().string());
  }

  ModelWorld world;
  SurfaceEngine engine;
  std::vector<std::string> log;
  std::optional<PopoverWindow> popover;
};

TEST_F(PopoverViewTest, WithoutAFrameItStandsAlmostEmpty) {
  open();
  const QStringList seen = texts();
  EXPECT_TRUE(seen.contains("0"));
  EXPECT_TRUE(seen.contains("No fans"));
  EXPECT_TRUE(seen.contains("All clear!"));
  EXPECT_FALSE(sees("culprit"));
  EXPECT_FALSE(sees("fact-battery"));
  EXPECT_FALSE(sees("awake"));
  EXPECT_FALSE(sees("servers"));
  EXPECT_EQ(popover->window().width(), 380);
}

TEST_F(PopoverViewTest, TheStoryIsToldFromTopToBottom) {
  Frame frame = frameWithForgotten(world.scheduler.wall, 4);
  frame.groups.insert(frame.groups.begin(), app("Xcode", 12, 900));
  frame.battery = onBattery(72);
  frame.temperature = 61;
  frame.servers = {devServer("shop", 5, 3000)};
  frame.sleepBlockers = {{.pid = 77,
                          .processName = "tail",
                          .preventsSystemSleep = true,
                          .preventsDisplaySleep = false,
                          .reasons = {},
                          .since = world.scheduler.wall - 7200}};
  take(std::move(frame));
  open();
  const QStringList seen = texts();
  int last = -1;
  for (const char* text :
       {"Right now", "Warm at 61°C", "Calm Xcode", "61°C chip", "Left running", "tool 0", "+1 more",
        "Keeping it awake", "tail", "Servers", "shop", ":3000", "Open Embrix"}) {
    const auto place = static_cast<int>(seen.indexOf(text));
    EXPECT_GT(place, last) << text;
    last = place;
  }
  EXPECT_FALSE(seen.contains("tool 3"));
}

TEST_F(PopoverViewTest, AStopAsksAndEscapeNeverActs) {
  take(frameWithForgotten(world.scheduler.wall, 1));
  open();
  click(stopButton());
  EXPECT_TRUE(sees("confirm-card"));
  EXPECT_TRUE(texts().contains("Stop tool 0?"));
  EXPECT_EQ(ended(), 0);
  press(Qt::Key_Escape);
  EXPECT_FALSE(sees("confirm-card"));
  EXPECT_EQ(ended(), 0);
  EXPECT_TRUE(popover->isOpen()) << "that Escape was for the question alone";
}

TEST_F(PopoverViewTest, ReturnActsWhereverTheKeyboardIs) {
  take(frameWithForgotten(world.scheduler.wall, 1));
  open();
  click(stopButton());
  press(Qt::Key_Return);
  EXPECT_EQ(ended(), 1);
  EXPECT_FALSE(sees("confirm-card"));
}

TEST_F(PopoverViewTest, ReturnActsAlsoOnTheCancelButton) {
  take(frameWithForgotten(world.scheduler.wall, 1));
  open();
  click(stopButton());
  press(Qt::Key_Tab);
  ASSERT_EQ(popover->window().activeFocusItem(), find("confirm-cancel"));
  press(Qt::Key_Return);
  EXPECT_EQ(ended(), 1);
}

TEST_F(PopoverViewTest, TheSpaceBarPressesTheButtonItIsOn) {
  take(frameWithForgotten(world.scheduler.wall, 1));
  open();
  click(stopButton());
  press(Qt::Key_Tab);
  press(Qt::Key_Space);
  EXPECT_EQ(ended(), 0);
  EXPECT_FALSE(sees("confirm-card"));
}

TEST_F(PopoverViewTest, TheCardsButtonsDoWhatTheySay) {
  take(frameWithForgotten(world.scheduler.wall, 2));
  open();
  click(stopButton());
  click("confirm-cancel");
  EXPECT_EQ(ended(), 0);
  click(stopButton());
  click("confirm-action");
  EXPECT_EQ(ended(), 1);
}

TEST_F(PopoverViewTest, TheAnswersStayInSightHoweverLongTheQuestion) {
  Frame frame = frameWithForgotten(world.scheduler.wall, 1);
  frame.forgotten[0].title = std::string(300, 'W');
  take(std::move(frame));
  open();
  click(stopButton());
  popover->window().grabWindow();  // what has become higher is laid out when it is next drawn
  const auto place = [&](const QString& name) {
    const QQuickItem* item = find(name);
    return item->mapRectToScene({0, 0, item->width(), item->height()});
  };
  EXPECT_GE(place("confirm-card").top(), 0);
  EXPECT_LE(place("confirm-card").bottom(), popover->window().height());
  EXPECT_LT(place("confirm-question").bottom(), place("confirm-action").top());
  click("confirm-action");
  EXPECT_EQ(ended(), 1);
}

TEST_F(PopoverViewTest, AClickBesideTheCardIsANo) {
  take(frameWithForgotten(world.scheduler.wall, 3));
  open();
  click("free-up");
  EXPECT_TRUE(texts().contains("Stop all 3 things left running?"));
  QTest::mouseClick(&popover->window(), Qt::LeftButton, Qt::NoModifier, QPoint(6, 6));
  settle();
  EXPECT_FALSE(sees("confirm-card"));
  EXPECT_EQ(ended(), 0);
}

TEST_F(PopoverViewTest, NothingBehindAQuestionIsReachedByTheKeyboard) {
  take(frameWithForgotten(world.scheduler.wall, 3));
  open();
  click("free-up");
  for (int i = 0; i < 5; ++i) {
    press(Qt::Key_Tab);
    const QQuickItem* focused = popover->window().activeFocusItem();
    ASSERT_NE(focused, nullptr);
    EXPECT_TRUE(focused->objectName().startsWith("confirm-"))
        << focused->objectName().toStdString();
  }
  press(Qt::Key_O, Qt::ControlModifier);
  EXPECT_TRUE(log.empty());
}

TEST_F(PopoverViewTest, WhatLiesBehindAQuestionIsDimmedByItsLayerAlone) {
  take(frameWithForgotten(world.scheduler.wall, 3));
  open();
  click("free-up");
  EXPECT_FALSE(find("free-up")->isEnabled());
  EXPECT_EQ(find("free-up")->opacity(), 1);
}

TEST_F(PopoverViewTest, EveryControlIsReachedByTheKeyboard) {
  Frame frame = frameWithForgotten(world.scheduler.wall, 4);
  frame.battery = onBattery(72);
  frame.servers = {devServer("shop", 5, 3000), toolServer(6)};
  frame.groups.insert(frame.groups.begin(), app("Xcode", 12, 900));
  take(std::move(frame));
  open();
  QStringList reached;
  for (int i = 0; i < 30; ++i) {
    press(Qt::Key_Tab);
    const QQuickItem* focused = popover->window().activeFocusItem();
    ASSERT_NE(focused, nullptr);
    if (!reached.contains(focused->objectName())) reached.push_back(focused->objectName());
  }
  for (const QString& name :
       {QStringLiteral("culprit"), QStringLiteral("fact-battery"), stopButton(),
        QStringLiteral("left-running-more"), QStringLiteral("free-up"), QStringLiteral("tools"),
        QStringLiteral("open-embrix"), QStringLiteral("settings-menu")}) {
    EXPECT_TRUE(reached.contains(name)) << name.toStdString();
  }
}

TEST_F(PopoverViewTest, ARowThatIsGoneLeaves) {
  const Frame two = frameWithForgotten(world.scheduler.wall, 2);
  take(two);
  open();
  EXPECT_TRUE(texts().contains("tool 1"));
  Frame one = two;
  one.forgotten.pop_back();
  take(std::move(one));
  popover->window().grabWindow();  // a list lets go of its rows when it is next drawn
  settle();
  EXPECT_FALSE(texts().contains("tool 1"));
  EXPECT_TRUE(texts().contains("tool 0"));
  take(frameAt(world.scheduler.wall));
  EXPECT_TRUE(texts().contains("All clear!"));
  EXPECT_FALSE(sees("free-up"));
}

TEST_F(PopoverViewTest, TheCardClosesUpWithItsRows) {
  SteppedDriver driver;
  engine.values().motion().setFrozen(false);
  const auto heightAfter = [&](double seconds) {
    constexpr double kFrame = 0.05;
    for (double passed = 0; passed < seconds; passed += kFrame) {
      popover->window().grabWindow();  // a list looks after its rows when it is drawn
      driver.step(kFrame);
    }
    return find("left-running")->height();
  };
  const Frame whole = frameWithForgotten(world.scheduler.wall, 2);
  Frame half = whole;
  half.forgotten.pop_back();
  take(whole);
  open();
  const double two = heightAfter(0.05);
  EXPECT_EQ(heightAfter(2), two);
  take(half);
  const double closing = heightAfter(0.15);
  const double one = heightAfter(2);
  EXPECT_LT(closing, two);
  EXPECT_LT(one, closing);
  const std::string id = world.model().forgottenRows().at(0).id().string();
  EXPECT_EQ(two - one, find("left-running-row-" + QString::fromStdString(id))->height());
  take(whole);
  EXPECT_EQ(heightAfter(0.05), two);  // at once
}

TEST_F(PopoverViewTest, WhatAStopGaveBackFloatsAway) {
  engine.values().motion().setFrozen(false);
  take(frameWithForgotten(world.scheduler.wall, 1));
  open();
  click(stopButton());
  press(Qt::Key_Return);
  EXPECT_TRUE(sees("float-away"));
  EXPECT_TRUE(texts().contains("+1.0 GB"));
}

TEST_F(PopoverViewTest, TheRowsMenuHoldsItsItemsInOrder) {
  Frame frame = frameWithForgotten(world.scheduler.wall, 1);
  frame.forgotten[0].root.directory = "/Users/me/code";
  take(std::move(frame));
  open();
  const QString id = QString::fromStdString(world.model().forgottenRows().at(0).id().string());
  click("left-running-row-" + id, Qt::RightButton);
  EXPECT_TRUE(isMenuOpen("menu-of-" + id));
  EXPECT_EQ(menuLabels("menu-of-" + id),
            (QStringList{"Stop", "Calm (Efficiency Cores)", "Keep Running, Don't List It",
                         "Show Folder in Finder"}));
  press(Qt::Key_Down);
  press(Qt::Key_Down);
  press(Qt::Key_Return);
  EXPECT_EQ(world.model().calmed()->size(), 1u) << "the second item was chosen";
}

TEST_F(PopoverViewTest, TheCulpritsMenuHasItsRules) {
  take(frameAt(world.scheduler.wall, {app("Xcode", 12)}));
  open();
  click("culprit", Qt::RightButton);
  EXPECT_EQ(menuLabels("culprit-menu"), (QStringList{"Quit Xcode", "Auto-Calm Xcode"}));
  press(Qt::Key_Down);
  press(Qt::Key_Return);
  EXPECT_TRUE(texts().contains("Quit Xcode?"));
  EXPECT_EQ(ended(), 0);
}

TEST_F(PopoverViewTest, TheButtonCalmsAndRestores) {
  take(frameAt(world.scheduler.wall, {app("Xcode", 12)}));
  open();
  click("culprit");
  EXPECT_EQ(world.model().calmed()->size(), 1u);
  EXPECT_TRUE(texts().contains("Restore Xcode"));
  click("culprit");
  EXPECT_TRUE(world.model().calmed()->empty());
}

TEST_F(PopoverViewTest, TheSettingsMenuHoldsItsItemsInOrder) {
  open();
  click("settings-menu");
  EXPECT_EQ(menuLabels("settings-items"),
            (QStringList{"Settings…", "Check for Updates…", "", "Quit Embrix"}));
  click("menu-quit");
  EXPECT_EQ(log, (std::vector<std::string>{"terminate"}));
}

TEST_F(PopoverViewTest, AHelpTextDoesNotLieOverWhatItsControlHasOpened) {
  open();
  QQuickItem* control = find("settings-menu");
  auto* help = control->findChild<QObject*>("help");
  ASSERT_NE(help, nullptr);
  help->setProperty("delay", 0);
  const QPoint place = control->mapToScene({control->width() / 2, control->height() / 2}).toPoint();
  QTest::mouseMove(&popover->window(), place);
  settle();
  EXPECT_TRUE(help->property("visible").toBool());
  click("settings-menu");
  EXPECT_TRUE(isMenuOpen("settings-items"));
  EXPECT_FALSE(help->property("visible").toBool());
  press(Qt::Key_Escape);
  QTest::mouseMove(&popover->window(), QPoint(6, 6));
  settle();
  QTest::mouseMove(&popover->window(), place);
  settle();
  EXPECT_TRUE(help->property("visible").toBool()) << "the pointer has come anew";
}

TEST_F(PopoverViewTest, AHelpTextStandsOutFromWhatItLiesOn) {
  open();
  const QObject* help = find("settings-menu")->findChild<QObject*>("help");
  ASSERT_NE(help, nullptr);
  const auto* face = qobject_cast<QQuickItem*>(help->property("background").value<QObject*>());
  ASSERT_NE(face, nullptr);
  for (const auto appearance : {EX::Appearance::light, EX::Appearance::dark}) {
    engine.values().palette().setAppearance(appearance);
    settle();
    const auto below = find("left-running")->property("color").value<QColor>().lightnessF();
    const auto above = face->property("color").value<QColor>().lightnessF();
    EXPECT_GT(std::abs(above - below), 0.5);
  }
}

TEST_F(PopoverViewTest, KeysOpenWhatTheyName) {
  open();
  press(Qt::Key_O, Qt::ControlModifier);
  EXPECT_EQ(log, (std::vector<std::string>{"open overview"}));
  EXPECT_FALSE(popover->isOpen());
  popover->open(std::nullopt);
  settle();
  press(Qt::Key_Comma, Qt::ControlModifier);
  EXPECT_EQ(log.back(), "open settings");
  popover->open(std::nullopt);
  settle();
  press(Qt::Key_Q, Qt::ControlModifier);
  EXPECT_EQ(log.back(), "terminate");
}

TEST_F(PopoverViewTest, EscapeClosesIt) {
  open();
  press(Qt::Key_Escape);
  EXPECT_FALSE(popover->isOpen());
  EXPECT_EQ(*world.model().visibleSurfaces(), 0);
}

TEST_F(PopoverViewTest, EscapeInAMenuClosesTheMenuAlone) {
  take(frameAt(world.scheduler.wall, {app("Xcode", 12)}));
  open();
  click("settings-menu");
  press(Qt::Key_Escape);
  EXPECT_FALSE(isMenuOpen("settings-items"));
  EXPECT_TRUE(popover->isOpen());
  click("culprit", Qt::RightButton);
  for (const auto key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Right, Qt::Key_Escape}) press(key);
  EXPECT_TRUE(popover->isOpen());
  for (int i = 0; i < 2 && isMenuOpen("culprit-menu"); ++i) press(Qt::Key_Escape);
  EXPECT_FALSE(isMenuOpen("culprit-menu"));
  EXPECT_TRUE(popover->isOpen());
  press(Qt::Key_Escape);
  EXPECT_FALSE(popover->isOpen());
}

TEST_F(PopoverViewTest, AfterAMenuTheKeyboardIsWhereItWas) {
  take(frameAt(world.scheduler.wall, {app("Xcode", 12)}));
  open();
  while (popover->window().activeFocusItem() != find("settings-menu")) press(Qt::Key_Tab);
  press(Qt::Key_Space);
  ASSERT_TRUE(isMenuOpen("settings-items"));
  press(Qt::Key_Escape);
  EXPECT_EQ(popover->window().activeFocusItem(), find("settings-menu"));
  EXPECT_TRUE(find("settings-menu")->property("visualFocus").toBool());

  // A question that the menu has led to keeps it until it is answered.
  click("culprit", Qt::RightButton);
  press(Qt::Key_Down);
  press(Qt::Key_Return);
  ASSERT_TRUE(sees("confirm-card"));
  press(Qt::Key_Escape);
  EXPECT_FALSE(sees("confirm-card"));
  press(Qt::Key_Escape);
  EXPECT_FALSE(popover->isOpen());
}

TEST_F(PopoverViewTest, AWindowOfItsOwnStaysWhateverItOpens) {
  open(PopoverWindow::Form::window);
  click("open-embrix");
  EXPECT_EQ(log, (std::vector<std::string>{"open overview"}));
  press(Qt::Key_Escape);
  EXPECT_TRUE(popover->isOpen()) << "nothing would bring it back";
  popover->window().close();
  EXPECT_FALSE(popover->isOpen());
}

TEST_F(PopoverViewTest, AfterAnAnswerTheKeyboardIsWhereItWas) {
  take(frameWithForgotten(world.scheduler.wall, 3));
  open();
  while (popover->window().activeFocusItem() != find("free-up")) press(Qt::Key_Tab);
  press(Qt::Key_Return);
  ASSERT_TRUE(sees("confirm-card"));
  press(Qt::Key_Escape);
  EXPECT_EQ(popover->window().activeFocusItem(), find("free-up"));
  press(Qt::Key_Return);
  ASSERT_TRUE(sees("confirm-card"));
  click("confirm-cancel");
  EXPECT_EQ(popover->window().activeFocusItem(), find("free-up"));
  press(Qt::Key_Escape);
  EXPECT_FALSE(popover->isOpen()) << "the second Escape is for the panel";
}

TEST_F(PopoverViewTest, AfterAStopEscapeStillClosesIt) {
  take(frameWithForgotten(world.scheduler.wall, 1));
  open();
  click(stopButton());
  press(Qt::Key_Return);
  EXPECT_EQ(ended(), 1);
  press(Qt::Key_Escape);
  EXPECT_FALSE(popover->isOpen());
}

TEST_F(PopoverViewTest, WhatTheKeyboardReachesIsSeen) {
  Frame frame = frameWithForgotten(world.scheduler.wall, 4);
  frame.battery = onBattery(72);
  frame.groups.insert(frame.groups.begin(), app("Xcode", 12, 900));
  for (int i = 0; i < 5; ++i) {
    frame.servers.push_back(devServer(std::string("shop ") + std::to_string(i), 5 + i, 3000 + i));
    frame.sleepBlockers.push_back({.pid = 70 + i,
                                   .processName = "tail",
                                   .preventsSystemSleep = true,
                                   .preventsDisplaySleep = false,
                                   .reasons = {},
                                   .since = world.scheduler.wall - 7200});
  }
  take(std::move(frame));
  open();
  const int height = popover->window().height();
  bool hasScrolled = false;
  for (int i = 0; i < 40; ++i) {
    press(Qt::Key_Tab);
    const QQuickItem* focused = popover->window().activeFocusItem();
    ASSERT_NE(focused, nullptr);
    const QRectF box = focused->mapRectToScene({0, 0, focused->width(), focused->height()});
    EXPECT_GE(box.top(), 0) << focused->objectName().toStdString();
    EXPECT_LE(box.bottom(), height) << focused->objectName().toStdString();
    hasScrolled |= find("hero")->mapToScene({0, 0}).y() < 0;
  }
  EXPECT_TRUE(hasScrolled) << "all of it is higher than this screen";
}

TEST_F(PopoverViewTest, ALongNameInAMenuStaysInside) {
  take(frameAt(world.scheduler.wall, {app(std::string(300, 'W'), 12)}));
  open();
  click("culprit", Qt::RightButton);
  for (const char* name : {"menu-quit", "culprit-menu"}) {
    const QObject* wide = object(name);
    ASSERT_NE(wide, nullptr) << name;
    EXPECT_LE(wide->property("width").toDouble(), 372) << name;
  }
  QStringList seen;
  for (QQuickItem* text : find("menu-quit")->findChildren<QQuickItem*>()) {
    if (!text->inherits("QQuickText")) continue;
    seen.push_back(text->property("text").toString());
    EXPECT_LE(text->property("contentWidth").toDouble(), 340);
  }
  EXPECT_FALSE(seen.isEmpty());
}

TEST_F(PopoverViewTest, AMenuThatIsOpenStaysAsItIsWhileTheMachineGoesOn) {
  take(frameAt(world.scheduler.wall, {app("Xcode", 12)}));
  open();
  click("culprit", Qt::RightButton);
  press(Qt::Key_Down);
  const QObject* menu = object("culprit-menu");
  EXPECT_EQ(menu->property("currentIndex").toInt(), 0);
  for (const double watts : {13.0, 14.0, 15.0}) {
    take(frameAt(world.scheduler.wall, {app("Xcode", watts)}));
  }
  EXPECT_TRUE(isMenuOpen("culprit-menu"));
  EXPECT_EQ(menu->property("currentIndex").toInt(), 0);
  EXPECT_EQ(menuLabels("culprit-menu"), (QStringList{"Quit Xcode", "Auto-Calm Xcode"}));
}

TEST_F(PopoverViewTest, ARuleIsChosenByTheKeyboardAndTickedTheNextTime) {
  take(frameAt(world.scheduler.wall, {app("Xcode", 12)}));
  open();
  click("culprit", Qt::RightButton);
  press(Qt::Key_Down);
  press(Qt::Key_Down);
  press(Qt::Key_Right);
  press(Qt::Key_Return);
  const auto rule = world.model().calmRuleForApp("Xcode");
  ASSERT_TRUE(rule);
  EXPECT_EQ(rule->condition, CalmRule::Condition::onBattery);
  click("culprit", Qt::RightButton);
  const QObject* item = object("menu-rule-onBattery");
  ASSERT_NE(item, nullptr);
  EXPECT_TRUE(item->property("checked").toBool());
}

TEST_F(PopoverViewTest, AClickOnATileOpensItsServer) {
  Frame frame = frameAt(world.scheduler.wall);
  frame.servers = {devServer("shop", 5, 3000)};
  const QString id = QString::fromStdString(frame.servers[0].id().string());
  take(std::move(frame));
  open();
  click("server-" + id);
  EXPECT_EQ(log, (std::vector<std::string>{"url http://localhost:3000"}));
  click("server-" + id, Qt::RightButton);
  press(Qt::Key_Down);
  press(Qt::Key_Return);
  EXPECT_EQ(log.back(), "copy http://localhost:3000");
}

TEST_F(PopoverViewTest, LinksOpenTheirPages) {
  Frame frame = frameWithForgotten(world.scheduler.wall, 4);
  frame.battery = onBattery(72);
  take(std::move(frame));
  for (const auto& [name, page] :
       {std::pair("left-running-more", "open running"), std::pair("fact-battery", "open battery"),
        std::pair("open-embrix", "open overview")}) {
    open();
    click(name);
    ASSERT_FALSE(log.empty()) << name;
    EXPECT_EQ(log.back(), page);
  }
}

TEST_F(PopoverViewTest, ATitleThatIsTooLongForALineHasASecond) {
  Frame frame = frameWithForgotten(world.scheduler.wall, 3);
  frame.forgotten[0].title = "iOS Simulator · iPhone 17 Pro Max";
  frame.forgotten[1].title = std::string(300, 'W');
  take(std::move(frame));
  open();
  const auto row = [&](int place) {
    const auto id = world.model().forgottenRows().at(static_cast<std::size_t>(place)).id();
    return find("left-running-row-" + QString::fromStdString(id.string()));
  };
  const auto title = [&](QQuickItem* of) -> QQuickItem* {
    for (auto* text : of->findChildren<QQuickItem*>()) {
      if (text->property("maximumLineCount").toInt() == 2) return text;
    }
    return nullptr;
  };
  const auto place = [](QQuickItem* item) {
    return item->mapRectToScene({0, 0, item->width(), item->height()});
  };
  ASSERT_NE(title(row(0)), nullptr);
  EXPECT_FALSE(title(row(0))->property("truncated").toBool());
  EXPECT_EQ(title(row(0))->property("lineCount").toInt(), 2);
  EXPECT_TRUE(title(row(1))->property("truncated").toBool());
  EXPECT_EQ(title(row(1))->property("lineCount").toInt(), 2);
  EXPECT_EQ(title(row(2))->property("lineCount").toInt(), 1);
  EXPECT_LE(place(row(0)).bottom(), place(row(1)).top());
  EXPECT_LE(place(row(1)).bottom(), place(row(2)).top());
  EXPECT_LE(place(row(2)).bottom(), place(find("free-up")).top());
}

TEST_F(PopoverViewTest, LongNamesHugeFiguresAndHostileTextsStayInside) {
  const std::string endless(300, 'W');
  Frame frame = frameWithForgotten(world.scheduler.wall, 3);
  frame.forgotten[0].title = endless;
  frame.forgotten[1].title = "\xff\xfe<b>bold</b>\n\n";
  frame.forgotten[2].project = endless;
  frame.groups.insert(frame.groups.begin(), group("x", endless, {row(900, endless, 4096)}));
  frame.battery = onBattery(100);
  frame.temperature = 1234567;
  frame.fans = {{.rpm = 123456}};
  frame.servers = {devServer(endless, 5, 65535), devServer("a", 6, 65534)};
  take(std::move(frame));
  open();
  const auto check = [&](auto&& self, QQuickItem* item) -> void {
    if (!item->isVisible()) return;
    if (item->inherits("QQuickText")) {
      const QRectF box = item->mapRectToScene({0, 0, item->width(), item->height()});
      const std::string text = item->property("text").toString().left(30).toStdString();
      EXPECT_GE(box.left(), 0) << text;
      EXPECT_LE(box.right(), 380) << text;
      EXPECT_LE(item->property("contentWidth").toDouble(), item->width() + 1) << text;
    }
    for (QQuickItem* child : item->childItems()) self(self, child);
  };
  check(check, popover->window().contentItem());
}

TEST_F(PopoverViewTest, ControlsTellTheirNamesToThoseWhoDoNotSeeThem) {
  Frame frame = frameWithForgotten(world.scheduler.wall, 1);
  frame.battery = onBattery(72);
  take(std::move(frame));
  open();
  const auto name = [&](const QString& item) {
    QAccessibleInterface* face = QAccessible::queryAccessibleInterface(find(item));
    return face == nullptr ? std::string() : face->text(QAccessible::Name).toStdString();
  };
  EXPECT_EQ(name("fact-battery"), "Battery details");
  EXPECT_EQ(name(stopButton()), "Stop tool 0");
  EXPECT_EQ(name("free-up"), "Free up 1.0 GB");
  EXPECT_EQ(name("settings-menu"), "Settings and Quit");
  EXPECT_EQ(name("open-embrix"), "Open Embrix");
}

TEST_F(PopoverViewTest, TheAppearanceChangesWithoutAnythingMadeAnew) {
  open();
  QQuickItem* card = find("left-running");
  const QColor light = card->property("color").value<QColor>();
  engine.values().palette().setAppearance(EX::Appearance::dark);
  settle();
  EXPECT_EQ(find("left-running"), card);
  EXPECT_NE(card->property("color").value<QColor>(), light);
}

TEST_F(PopoverViewTest, AHiddenPanelIsGoneAndReadsNothing) {
  open();
  EXPECT_EQ(*world.model().visibleSurfaces(), 1);
  popover->close();
  settle();
  EXPECT_EQ(*world.model().visibleSurfaces(), 0);
  EXPECT_EQ(find("hero"), nullptr);
  take(frameAt(world.scheduler.wall, {app("Xcode", 12)}));
  EXPECT_TRUE(popover->wasJustClosed());
  world.scheduler.advance(1);
  EXPECT_FALSE(popover->wasJustClosed());
}

}  // namespace
}  // namespace embrix
