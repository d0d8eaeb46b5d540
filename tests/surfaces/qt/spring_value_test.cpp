#include "surfaces/qt/spring_value.h"

#include <gtest/gtest.h>

#include <QQmlComponent>
#include <QSignalSpy>

#include "stepped_driver.h"
#include "surfaces/qt/surface_engine.h"

namespace embrix {
namespace {

class SpringValueTest : public testing::Test {
 protected:
  std::unique_ptr<SpringValue> make(const char* properties) {
    QQmlComponent component(&engine.qml());
    component.setData(
        QByteArray("import QtQuick\nimport Embrix\nSpringValue { ") + properties + " }", {});
    return std::unique_ptr<SpringValue>(qobject_cast<SpringValue*>(component.create()));
  }

  SteppedDriver driver;
  SurfaceEngine engine;
};

TEST_F(SpringValueTest, StandsAtItsTargetFromTheStart) {
  const auto value = make("target: 5");
  EXPECT_EQ(value->value(), 5);
  EXPECT_EQ(value->state(), QAbstractAnimation::Stopped);
}

TEST_F(SpringValueTest, FollowsItsSpringAndRestsAtTheTarget) {
  const auto value = make("target: 0; response: 0.5; damping: 0.6");
  value->setTarget(1);
  EXPECT_EQ(value->value(), 0);
  driver.step(0.16);
  EXPECT_NEAR(value->value(), SpringMotion({0.5, 0.6}, 0, 1).valueAt(0.16), 0.03);
  driver.step(5);
  EXPECT_EQ(value->value(), 1);
  EXPECT_EQ(value->state(), QAbstractAnimation::Stopped);
}

TEST_F(SpringValueTest, TakesItsSpeedAlongToANewTarget) {
  const auto value = make("target: 0; response: 0.5; damping: 1");
  value->setTarget(1);
  driver.step(0.096);
  const double before = value->value();
  value->setTarget(0);
  driver.step(0.016);
  EXPECT_GT(value->value(), before) << "it cannot turn at once";
  driver.step(5);
  EXPECT_EQ(value->value(), 0);
}

TEST_F(SpringValueTest, WaitsWhereItStartsBeforeItMoves) {
  const auto value = make("from: 10; target: 20; delay: 0.2; response: 0.3");
  EXPECT_EQ(value->value(), 10);
  driver.step(0.19);
  EXPECT_EQ(value->value(), 10);
  driver.step(0.1);
  EXPECT_GT(value->value(), 10);
}

TEST_F(SpringValueTest, JumpsWhileNothingMoves) {
  engine.values().motion().setFrozen(true);
  const auto value = make("from: 0; target: 1; delay: 3");
  EXPECT_EQ(value->value(), 1);
  QSignalSpy changed(value.get(), &SpringValue::valueChanged);
  value->setTarget(4);
  EXPECT_EQ(value->value(), 4);
  EXPECT_EQ(changed.count(), 1);
  EXPECT_EQ(value->state(), QAbstractAnimation::Stopped);
}

TEST(MotionValuesTest, TheUsersWishAndATestRunBothStandStill) {
  QObject owner;
  MotionValues motion(&owner);
  QSignalSpy changed(&motion, &MotionValues::stillChanged);
  motion.setReduced(true);
  EXPECT_TRUE(motion.isStill());
  motion.setFrozen(true);
  EXPECT_EQ(changed.count(), 1);
  motion.setReduced(false);
  EXPECT_TRUE(motion.isStill());
  motion.setFrozen(false);
  EXPECT_FALSE(motion.isStill());
  EXPECT_EQ(changed.count(), 2);
}

TEST(MotionValuesTest, ASpringIsACurveWithItsTime) {
  QObject owner;
  MotionValues motion(&owner);
  const SpringMotion expected({0.45, 0.8}, 0, 1);
  const int time = motion.springTime(0.45, 0.8);
  EXPECT_NEAR(time / 1000.0, expected.settlingTime(0.001), 0.001);
  const QEasingCurve curve = MotionValues::spring(0.45, 0.8);
  for (const double part : {0.1, 0.3, 0.6}) {
    EXPECT_NEAR(curve.valueForProgress(part), expected.valueAt(part * time / 1000), 0.005);
  }
  motion.setFrozen(true);
  EXPECT_EQ(motion.springTime(0.45, 0.8), 0);
  EXPECT_EQ(motion.time(180), 0);
}

}  // namespace
}  // namespace embrix
