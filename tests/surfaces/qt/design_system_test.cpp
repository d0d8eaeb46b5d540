// The parts that all surfaces are made of: how they look, move and answer.

#include <gtest/gtest.h>

#include <QAccessible>
#include <QFont>
#include <QImage>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QtTest/QTest>

#include "stepped_driver.h"
#include "surfaces/qt/surface_engine.h"
#include "surfaces/spring.h"

namespace embrix {
namespace {

class DesignSystemTest : public testing::Test {
 protected:
  DesignSystemTest() {
    window.resize(420, 320);
    window.show();
    window.requestActivate();
  }

  // What the text of a view makes, at the window's top left corner.
  QQuickItem& make(const QByteArray& view) {
    QQmlComponent component(&engine.qml());
    component.setData("import QtQuick\nimport Embrix\n" + view, {});
    item.reset(qobject_cast<QQuickItem*>(component.create()));
    EXPECT_NE(item, nullptr) << component.errorString().toStdString();
    item->setParentItem(window.contentItem());
    QCoreApplication::processEvents();
    return *item;
  }
  QQuickItem& part(const char* name) {
    auto* found = item->findChild<QQuickItem*>(QLatin1String(name));
    if (found == nullptr) found = below(*item, QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return *found;
  }
  static QQuickItem* below(QQuickItem& root, QLatin1String name) {
    if (root.objectName() == name) return &root;
    for (QQuickItem* child : root.childItems()) {
      if (QQuickItem* found = below(*child, name)) return found;
    }
    return nullptr;
  }
  static double number(const QQuickItem& of, const char* property) {
    return of.property(property).toDouble();
  }
  static QColor color(const QQuickItem& of) { return of.property("color").value<QColor>(); }
  QColor hue(EX::Hue hue) {
    return toQColor(EX::color(hue, engine.values().palette().appearance()));
  }
  QPoint middleOf(const QQuickItem& of) {
    return of.mapToScene({of.width() / 2, of.height() / 2}).toPoint();
  }
  void moveTo(QPoint point) {
    QTest::mouseMove(&window, point);
    QCoreApplication::processEvents();
  }
  void click(const QQuickItem& of) {
    QTest::mouseClick(&window, Qt::LeftButton, Qt::NoModifier, middleOf(of));
  }
  void press(Qt::Key key) { QTest::keyClick(&window, key); }

  // How many pixels of the item are not as the empty window is.
  int pixelsDrawn() {
    const QImage image = window.grabWindow();
    const QRgb nothing = image.pixel(image.width() - 1, image.height() - 1);
    const QRect box = QRectF(0, 0, item->width(), item->height()).toAlignedRect() & image.rect();
    int count = 0;
    for (int y = box.top(); y <= box.bottom(); ++y) {
      for (int x = box.left(); x <= box.right(); ++x) count += image.pixel(x, y) != nothing ? 1 : 0;
    }
    return count;
  }

  SteppedDriver driver;
  SurfaceEngine engine;
  QQuickWindow window;
  std::unique_ptr<QQuickItem> item;
};

// --- Buttons ---

class ButtonTest : public DesignSystemTest {
 protected:
  QQuickItem& button(const QByteArray& properties) {
    return make("EXButton { text: \"Go\"; " + properties + " }");
  }
  QQuickItem& face() {
    return *item->property("background").value<QQuickItem*>()->childItems().at(0);
  }
  QQuickItem& label() { return *item->property("contentItem").value<QQuickItem*>(); }
};

TEST_F(ButtonTest, EachKindHasItsFillAndText) {
  struct Case {
    const char* kind;
    QColor fill;
    QColor text;
    double shadow;
  };
  for (const auto appearance : {EX::Appearance::light, EX::Appearance::dark}) {
    engine.values().palette().setAppearance(appearance);
    const Case cases[] = {
        {"push", hue(EX::Hue::coral), hue(EX::Hue::inkFixed), 3},
        {"primary", hue(EX::Hue::primaryFill), hue(EX::Hue::onPrimary), 0},
        {"ghost", QColor(Qt::transparent), hue(EX::Hue::ink), 0},
        {"soft", hue(EX::Hue::well), hue(EX::Hue::ink), 0},
    };
    for (const Case& c : cases) {
      button(QByteArray("fill: EX.coral; kind: \"") + c.kind + "\"");
      EXPECT_EQ(color(face()).rgba(), c.fill.rgba()) << c.kind;
      EXPECT_EQ(color(label()), c.text) << c.kind;
      EXPECT_EQ(number(face(), "shadow"), c.shadow) << c.kind;
      EXPECT_EQ(face().property("outlined").toBool(), c.shadow > 0) << c.kind;
    }
  }
}

TEST_F(ButtonTest, ThePointerLiftsAPushButtonOverALongerShadow) {
  QQuickItem& push = button("");
  moveTo(middleOf(push));
  driver.step(0.06);
  EXPECT_GT(number(push, "lift"), 0.3);
  driver.step(0.2);
  EXPECT_DOUBLE_EQ(face().y(), -1);
  EXPECT_DOUBLE_EQ(number(face(), "shadow"), 5);
  moveTo({400, 300});
  driver.step(0.3);
  EXPECT_DOUBLE_EQ(face().y(), 0);
  EXPECT_DOUBLE_EQ(number(face(), "shadow"), 3);
}

TEST_F(ButtonTest, APressGoesInAtOnceAndSpringsBack) {
  QQuickItem& push = button("");
  const QPoint middle = middleOf(push);
  QTest::mousePress(&window, Qt::LeftButton, Qt::NoModifier, middle);
  driver.step(0.03);
  EXPECT_GT(number(push, "press"), 0.5);
  driver.step(0.06);
  EXPECT_DOUBLE_EQ(number(push, "press"), 1);
  EXPECT_DOUBLE_EQ(push.scale(), 0.94);
  EXPECT_EQ(push.transformOrigin(), QQuickItem::Bottom);
  QTest::mouseRelease(&window, Qt::LeftButton, Qt::NoModifier, middle);
  const SpringMotion back({0.3, 0.42}, 1, 0);
  double least = 1;
  for (int i = 0; i < 60; ++i) {
    driver.step(0.016);
    least = std::min(least, number(push, "press"));
  }
  EXPECT_NEAR(least, back.valueAt(0.165), 0.05) << "it swings over";
  EXPECT_DOUBLE_EQ(number(push, "press"), 0);
}

TEST_F(ButtonTest, APressedPushButtonStandsTwoPointsLower) {
  QQuickItem& push = button("");
  const QPoint middle = middleOf(push);
  QTest::mousePress(&window, Qt::LeftButton, Qt::NoModifier, middle);
  driver.step(0.3);
  EXPECT_DOUBLE_EQ(face().y(), 2 - number(push, "lift"));
  QTest::mouseRelease(&window, Qt::LeftButton, Qt::NoModifier, middle);
}

TEST_F(ButtonTest, APressedPrimaryButtonIsFainter) {
  QQuickItem& primary = button("kind: \"primary\"");
  EXPECT_EQ(face().opacity(), 1);
  QTest::mousePress(&window, Qt::LeftButton, Qt::NoModifier, middleOf(primary));
  EXPECT_EQ(face().opacity(), 0.85);
  QTest::mouseRelease(&window, Qt::LeftButton, Qt::NoModifier, middleOf(primary));
}

TEST_F(ButtonTest, ADisabledButtonIsFaintAndDoesNothing) {
  QQuickItem& off = button("enabled: false");
  const QSignalSpy clicked(&off, SIGNAL(clicked()));
  EXPECT_DOUBLE_EQ(off.opacity(), 0.45);
  click(off);
  EXPECT_EQ(clicked.count(), 0);
}

TEST_F(ButtonTest, IsAsWideAsItsWordsOrAsWhatItStandsIn) {
  const double own = button("").width();
  EXPECT_GT(own, 36);
  EXPECT_LT(own, 100);
  make("Item { width: 300; EXButton { objectName: \"wide\"; expands: true; text: \"Go\" } }");
  EXPECT_EQ(part("wide").width(), 300);
}

TEST_F(ButtonTest, WithoutMotionItJumps) {
  engine.values().motion().setFrozen(true);
  QQuickItem& push = button("");
  QTest::mousePress(&window, Qt::LeftButton, Qt::NoModifier, middleOf(push));
  EXPECT_DOUBLE_EQ(number(push, "press"), 1);
  QTest::mouseRelease(&window, Qt::LeftButton, Qt::NoModifier, middleOf(push));
  EXPECT_DOUBLE_EQ(number(push, "press"), 0);
}

TEST_F(ButtonTest, ThePopLookIsAnOutlineOverAHardShadow) {
  QQuickItem& pop = make("Pop { width: 80; height: 40; radius: 18; shadow: 4; color: EX.mint }");
  const QQuickItem& shadow = *pop.childItems().at(0);
  const QQuickItem& surface = *pop.childItems().at(1);
  EXPECT_EQ(shadow.y(), 4);
  EXPECT_EQ(color(shadow), hue(EX::Hue::inkFixed));
  EXPECT_EQ(number(shadow, "radius"), 18);
  EXPECT_EQ(color(surface), hue(EX::Hue::mint));
  const auto* border = surface.property("border").value<QObject*>();
  EXPECT_EQ(border->property("width").toDouble(), 2);
  EXPECT_EQ(border->property("color").value<QColor>(), hue(EX::Hue::inkFixed));
}

// --- Toggle, slider, picker ---

using ToggleTest = DesignSystemTest;

TEST_F(ToggleTest, TheKnobSpringsFromOneEndToTheOther) {
  QQuickItem& toggle = make("EXToggle { text: \"Alerts\" }");
  QQuickItem& knob = part("knob");
  const double end = knob.parentItem()->width() - 4 - knob.width();
  EXPECT_EQ(knob.x(), 4);
  EXPECT_EQ(knob.y(), 4);
  EXPECT_EQ(color(*knob.parentItem()), hue(EX::Hue::well));
  click(*knob.parentItem());
  EXPECT_TRUE(toggle.property("checked").toBool());
  driver.step(0.096);
  EXPECT_NEAR(knob.x(), SpringMotion({0.18, 0.85}, 4, end).valueAt(0.096), 3);
  EXPECT_GT(knob.x(), 5);
  EXPECT_LT(knob.x(), end);
  driver.step(2);
  EXPECT_EQ(knob.x(), end);
  EXPECT_EQ(color(*knob.parentItem()), hue(EX::Hue::mint));
}

TEST_F(ToggleTest, TheKeyboardAndThoseWhoDoNotSeeItReachIt) {
  QQuickItem& toggle = make("EXToggle { text: \"Alerts\" }");
  const QSignalSpy toggled(&toggle, SIGNAL(toggled()));
  toggle.forceActiveFocus();
  press(Qt::Key_Space);
  EXPECT_TRUE(toggle.property("checked").toBool());
  press(Qt::Key_Return);
  EXPECT_FALSE(toggle.property("checked").toBool());
  EXPECT_EQ(toggled.count(), 2);
  QAccessibleInterface* face = QAccessible::queryAccessibleInterface(&toggle);
  EXPECT_EQ(face->text(QAccessible::Name), "Alerts");
  EXPECT_TRUE(face->state().checkable);
}

TEST_F(ToggleTest, DisabledItIsFaintButThere) {
  QQuickItem& toggle = make("EXToggle { text: \"Alerts\"; width: 200 }");
  const int enabled = pixelsDrawn();
  EXPECT_GT(enabled, 1000);
  toggle.setEnabled(false);
  EXPECT_DOUBLE_EQ(toggle.opacity(), 0.45);
  EXPECT_GT(pixelsDrawn(), enabled * 9 / 10);
}

class SliderTest : public DesignSystemTest {
 protected:
  QQuickItem& slider(const QByteArray& properties = {}) {
    return make(
        "EXSlider { title: \"Minutes\"; width: 224; from: 1; to: 11; stepSize: 0.5; value: 3; " +
        properties + " }");
  }
  double value() { return number(*item, "value"); }
};

TEST_F(SliderTest, DraggingSetsTheNearestStepWithinTheRange) {
  slider();
  // The knob's middle runs from 12 to 212: 20 points a unit, 10 a step.
  QTest::mousePress(&window, Qt::LeftButton, Qt::NoModifier, middleOf(part("knob")));
  for (const int x : {60, 90, 123}) QTest::mouseMove(&window, {x, 13});
  EXPECT_NEAR(value(), 6.5, 1e-9) << "6.55 would be the very place";
  for (const int x : {180, 300}) QTest::mouseMove(&window, {x, 13});
  QTest::mouseRelease(&window, Qt::LeftButton, Qt::NoModifier, {300, 13});
  EXPECT_EQ(value(), 11);
}

TEST_F(SliderTest, TheFillReachesUpToTheKnob) {
  slider();
  EXPECT_NEAR(part("knob").x(), 40, 1e-9);
  EXPECT_NEAR(part("fill").width(), 52, 1e-9);
  EXPECT_EQ(color(part("fill")), hue(EX::Hue::mint));
  EXPECT_EQ(color(part("track")), hue(EX::Hue::track));
}

TEST_F(SliderTest, TheArrowKeysTakeItStepByStep) {
  slider().forceActiveFocus();
  press(Qt::Key_Right);
  EXPECT_EQ(value(), 3.5);
  press(Qt::Key_Left);
  press(Qt::Key_Left);
  EXPECT_EQ(value(), 2.5);
  QAccessibleInterface* face = QAccessible::queryAccessibleInterface(item.get());
  EXPECT_EQ(face->text(QAccessible::Name), "Minutes");
  ASSERT_NE(face->valueInterface(), nullptr);
  EXPECT_EQ(face->valueInterface()->currentValue().toDouble(), 2.5);
}

TEST_F(SliderTest, DisabledItIsHalfThereAndStays) {
  QQuickItem& minutes = slider();
  const int enabled = pixelsDrawn();
  EXPECT_GT(enabled, 2000);
  minutes.setEnabled(false);
  EXPECT_DOUBLE_EQ(minutes.opacity(), 0.5);
  EXPECT_GT(pixelsDrawn(), enabled * 9 / 10);
  click(part("track"));
  EXPECT_EQ(value(), 3);
}

class PickerTest : public DesignSystemTest {
 protected:
  QQuickItem& picker(const QByteArray& selection) {
    return make(
        "PillPicker { options: [{value: \"day\", label: \"Day\"}, {value: \"week\", label: "
        "\"A week\"}]; onPicked: value => selection = value; selection: " +
        selection + " }");
  }
};

TEST_F(PickerTest, TheMarkerSlidesToWhatIsPicked) {
  QQuickItem& days = picker("\"day\"");
  const QQuickItem& marker = part("marker");
  EXPECT_EQ(marker.x(), part("pill-day").x());
  EXPECT_EQ(marker.width(), part("pill-day").width());
  click(part("pill-week"));
  EXPECT_EQ(days.property("selection").toString(), "week");
  driver.step(0.08);
  EXPECT_GT(marker.x(), 0);
  EXPECT_LT(marker.x(), part("pill-week").x());
  driver.step(3);
  EXPECT_EQ(marker.x(), part("pill-week").x());
  EXPECT_EQ(marker.width(), part("pill-week").width());
}

TEST_F(PickerTest, TheSelectedPillIsFilled) {
  picker("\"week\"");
  const auto text = [&](const char* pill) {
    return color(*part(pill).property("contentItem").value<QQuickItem*>());
  };
  EXPECT_EQ(color(part("marker")), hue(EX::Hue::primaryFill));
  EXPECT_EQ(text("pill-week"), hue(EX::Hue::onPrimary));
  EXPECT_EQ(text("pill-day"), hue(EX::Hue::ink));
}

TEST_F(PickerTest, NothingSelectedHasNoMarker) {
  picker("null");
  EXPECT_FALSE(part("marker").isVisible());
}

TEST_F(PickerTest, TheArrowKeysMoveTheSelection) {
  QQuickItem& days = picker("\"day\"");
  part("pill-day").forceActiveFocus();
  press(Qt::Key_Left);
  EXPECT_EQ(days.property("selection").toString(), "day");
  press(Qt::Key_Right);
  EXPECT_EQ(days.property("selection").toString(), "week");
  EXPECT_TRUE(part("pill-week").hasActiveFocus());
}

// --- Small signs ---

using SignTest = DesignSystemTest;

TEST_F(SignTest, ABadgeSaysThatOthersReachTheServer) {
  QQuickItem& badge = make("ExposedBadge { help: \"why\" }");
  EXPECT_EQ(color(badge), hue(EX::Hue::coral));
  QAccessibleInterface* face = QAccessible::queryAccessibleInterface(&badge);
  EXPECT_EQ(face->text(QAccessible::Name), "On your network");
  EXPECT_EQ(face->text(QAccessible::Description), "why");
  EXPECT_LT(badge.childItems().at(0)->width(), badge.width());
}

TEST_F(SignTest, ATileIsASquareInItsFill) {
  QQuickItem& tile = make("KindTile { symbol: \"terminal\"; color: EX.yellowSoft }");
  EXPECT_EQ(tile.implicitWidth(), tile.implicitHeight());
  EXPECT_EQ(color(tile), hue(EX::Hue::yellowSoft));
}

TEST_F(SignTest, AnEyebrowIsSpacedCapitals) {
  const auto font =
      make("Eyebrow { text: \"Right now\"; size: 10 }").property("font").value<QFont>();
  EXPECT_EQ(font.capitalization(), QFont::AllUppercase);
  EXPECT_NEAR(font.letterSpacing(), 1.4, 0.02) << "the toolkit counts in 64ths";
  EXPECT_EQ(font.weight(), QFont::Bold);
}

TEST_F(SignTest, ARowIsLitUnderThePointer) {
  make("HoverRow { width: 100; contentItem: Item { implicitHeight: 20 } }");
  const auto lit = [&] { return color(*item->property("background").value<QQuickItem*>()); };
  moveTo({400, 300});
  EXPECT_EQ(lit().alpha(), 0);
  moveTo(middleOf(*item));
  EXPECT_EQ(lit(), hue(EX::Hue::rowHover));
}

TEST_F(SignTest, AFlowGoesOnToANewLineAsHighAsItsTallestChild) {
  make(
      "FlowLayout { width: 100; spacing: 10\n"
      "Item { width: 40; height: 10 } Item { width: 40; height: 30 }\n"
      "Item { objectName: \"third\"; width: 40; height: 10 } }");
  EXPECT_EQ(part("third").x(), 0);
  EXPECT_EQ(part("third").y(), 40);
}

// --- What moves by itself ---

using CountUpTest = DesignSystemTest;

TEST_F(CountUpTest, RollsToItsValueWithAnEaseOut) {
  const auto text = [&] { return item->property("text").toString(); };
  make("CountUp { value: 100; format: shown => shown.toFixed(0) + \"!\" }");
  EXPECT_EQ(text(), "0!");
  driver.step(0.45);
  EXPECT_GT(text().chopped(1).toInt(), 60) << "half of the time is more than half of the way";
  EXPECT_LT(text().chopped(1).toInt(), 95);
  driver.step(0.5);
  EXPECT_EQ(text(), "100!");
  item->setProperty("value", 7);
  EXPECT_EQ(text(), "100!");
  driver.step(0.4);
  EXPECT_LT(text().chopped(1).toInt(), 60);
  driver.step(0.6);
  EXPECT_EQ(text(), "7!");
}

TEST_F(CountUpTest, AChangeOnTheWayGoesOnFromThere) {
  make("CountUp { value: 100 }");
  driver.step(0.45);
  const double shown = number(*item, "shown");
  item->setProperty("value", 0);
  EXPECT_EQ(number(*item, "shown"), shown);
  driver.step(1);
  EXPECT_EQ(number(*item, "shown"), 0);
}

TEST_F(CountUpTest, JumpsWithoutMotion) {
  engine.values().motion().setReduced(true);
  make("CountUp { value: 100 }");
  EXPECT_EQ(number(*item, "shown"), 100);
  item->setProperty("value", 7);
  EXPECT_EQ(number(*item, "shown"), 7);
}

using PulseRingTest = DesignSystemTest;

TEST_F(PulseRingTest, OnceIsOnceAndThenItStaysInvisible) {
  const QQuickItem& ring = make("PulseRing { width: 10; height: 10; times: 1; growth: 2 }");
  driver.step(0.7);
  EXPECT_TRUE(ring.isVisible());
  EXPECT_GT(ring.scale(), 1.5);
  EXPECT_LT(ring.opacity(), 0.5);
  driver.step(0.8);
  EXPECT_FALSE(ring.isVisible());
  driver.step(5);
  EXPECT_FALSE(ring.isVisible());
}

TEST_F(PulseRingTest, WithoutANumberItGoesOnForEver) {
  const QQuickItem& ring = make("PulseRing { width: 10; height: 10 }");
  for (int i = 0; i < 5; ++i) {
    driver.step(1.4 + 0.1);
    EXPECT_TRUE(ring.isVisible()) << i;
    EXPECT_LT(ring.opacity(), 1);
  }
}

TEST_F(PulseRingTest, IsNotShownWithReducedMotionNorWhenItIsOff) {
  EXPECT_FALSE(make("PulseRing { on: false }").isVisible());
  engine.values().motion().setReduced(true);
  EXPECT_FALSE(make("PulseRing { width: 10; height: 10 }").isVisible());
}

TEST_F(DesignSystemTest, AFloatingTextRisesIsReadAndGoes) {
  make(
      "Item { id: place; Component.onCompleted: made.createObject(place)\n"
      "Component { id: made; FloatAway { objectName: \"float\"; text: \"+1.0 GB\" } } }");
  const QPointer<QQuickItem> text = &part("float");
  EXPECT_DOUBLE_EQ(text->scale(), 0.8);
  const double top = text->mapToScene({0, text->height() / 2}).y();
  driver.step(0.25);
  EXPECT_DOUBLE_EQ(text->scale(), 1.05);
  EXPECT_NEAR(text->mapToScene({0, text->height() / 2}).y(), top - 46, 1e-9);
  EXPECT_GT(text->opacity(), 0.99);
  driver.step(1.2);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(text, nullptr);
}

class PopOnChangeTest : public DesignSystemTest {
 protected:
  QQuickItem& popping() {
    return make(
        "Rectangle { property int count: 1; width: 20; height: 20; PopOnChange { value: "
        "parent.count } }");
  }
};

TEST_F(PopOnChangeTest, AChangeGrowsAndSpringsBack) {
  QQuickItem& figure = popping();
  driver.step(0.5);
  EXPECT_EQ(figure.scale(), 1) << "the first value is no change";
  figure.setProperty("count", 2);
  driver.step(0.144);
  EXPECT_NEAR(figure.scale(), 1.35, 0.02);
  double least = 2;
  for (int i = 0; i < 30; ++i) {
    driver.step(0.016);
    least = std::min(least, figure.scale());
  }
  EXPECT_LT(least, 0.999) << "the way back bounces";
  EXPECT_EQ(figure.scale(), 1);
}

TEST_F(PopOnChangeTest, WithReducedMotionThereIsNone) {
  engine.values().motion().setReduced(true);
  QQuickItem& figure = popping();
  figure.setProperty("count", 2);
  driver.step(0.1);
  EXPECT_EQ(figure.scale(), 1);
}

class StaggeredAppearTest : public DesignSystemTest {
 protected:
  QQuickItem& holderAt(int index) {
    return *make("StaggeredAppear { width: 50; Rectangle { width: 50; height: 20 } index: " +
                 QByteArray::number(index) + " }")
                .childItems()
                .at(0);
  }
};

TEST_F(StaggeredAppearTest, ComesUpIntoItsPlaceByASpring) {
  const QQuickItem& holder = holderAt(0);
  EXPECT_EQ(holder.opacity(), 0);
  EXPECT_EQ(holder.y(), 12);
  driver.step(0.16);
  const double way = SpringMotion({0.45, 0.8}, 0, 1).valueAt(0.16);
  EXPECT_NEAR(holder.y(), 12 * (1 - way), 1.5);
  driver.step(2);
  EXPECT_EQ(holder.opacity(), 1);
  EXPECT_EQ(holder.y(), 0);
}

TEST_F(StaggeredAppearTest, WaitsLongerTheFurtherDownButNeverLong) {
  const QQuickItem& third = holderAt(4);
  driver.step(0.16);
  EXPECT_EQ(third.opacity(), 0);
  driver.step(0.1);
  EXPECT_GT(third.opacity(), 0);
  const QQuickItem& last = holderAt(100);
  driver.step(0.38);
  EXPECT_EQ(last.opacity(), 0);
  driver.step(0.1);
  EXPECT_GT(last.opacity(), 0);
}

TEST_F(StaggeredAppearTest, IsThereAtOnceWithReducedMotion) {
  engine.values().motion().setReduced(true);
  EXPECT_EQ(holderAt(9).opacity(), 1);
}

class BigBatteryTest : public DesignSystemTest {
 protected:
  double level() { return number(*item, "level"); }
  double pulse() { return number(*item, "pulse"); }
};

TEST_F(BigBatteryTest, FillsAsItAppearsAndFollowsItsCharge) {
  make("BigBattery { fraction: 0.6 }");
  EXPECT_EQ(level(), 0);
  driver.step(0.32);
  EXPECT_NEAR(level(), SpringMotion({1.1, 0.8}, 0, 0.6).valueAt(0.32), 0.05);
  driver.step(4);
  EXPECT_EQ(level(), 0.6);
  item->setProperty("fraction", 0.2);
  driver.step(0.32);
  EXPECT_NEAR(level(), SpringMotion({0.8, 1}, 0.6, 0.2).valueAt(0.32), 0.05);
  driver.step(4);
  EXPECT_EQ(level(), 0.2);
}

TEST_F(BigBatteryTest, PulsesBackAndForthWhileOnPower) {
  make("BigBattery { fraction: 0.6; powered: true }");
  driver.step(0.85);
  EXPECT_GT(pulse(), 0.9);
  driver.step(0.9);
  EXPECT_LT(pulse(), 0.1);
  driver.step(0.9);
  EXPECT_GT(pulse(), 0.9);
}

TEST_F(BigBatteryTest, StandsStillOffPowerAndWithoutMotion) {
  make("BigBattery { fraction: 0.6 }");
  driver.step(0.85);
  EXPECT_EQ(pulse(), 0);
  engine.values().motion().setFrozen(true);
  make("BigBattery { fraction: 0.6; powered: true }");
  driver.step(0.85);
  EXPECT_EQ(pulse(), 0);
  EXPECT_EQ(level(), 0.6);
}

TEST_F(BigBatteryTest, TheSmallOneIs22PointsWide) {
  EXPECT_EQ(make("BatteryGlyph { fraction: 0.5; color: EX.ink }").implicitWidth(), 22);
}

}  // namespace
}  // namespace embrix
