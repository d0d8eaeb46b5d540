#include "surfaces/qt/mascot_item.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <QQuickWindow>

#include "drawn_item.h"
#include "surfaces/qt/surface_engine.h"

namespace embrix {
namespace {

class MascotItemTest : public testing::Test {
 protected:
  MascotItem& show() {
    figure_ = engine.make(QStringLiteral("Mascot"), {{QStringLiteral("size"), 120}});
    figure_->setParentItem(window.contentItem());
    window.resize(200, 200);
    window.show();
    return *figure_->findChild<MascotItem*>();
  }

  SurfaceEngine engine;
  QQuickWindow window;
  std::unique_ptr<QQuickItem> figure_;
};

TEST_F(MascotItemTest, ASeenFigureWaitsForItsNextFrame) {
  EXPECT_TRUE(show().isWaiting());
}

TEST_F(MascotItemTest, AHiddenFigureHasNoTimer) {
  MascotItem& item = show();
  figure_->setVisible(false);
  EXPECT_FALSE(item.isWaiting());
  figure_->setVisible(true);
  EXPECT_TRUE(item.isWaiting());
  window.hide();
  EXPECT_FALSE(item.isWaiting());
}

TEST_F(MascotItemTest, AStillFigureHasNoTimer) {
  MascotItem& item = show();
  item.setAnimated(false);
  EXPECT_FALSE(item.isWaiting());
  item.setAnimated(true);
  EXPECT_TRUE(item.isWaiting());
  engine.values().motion().setReduced(true);
  EXPECT_FALSE(item.isWaiting());
  engine.values().motion().setReduced(false);
  item.setFrozenAt(1.5);
  EXPECT_FALSE(item.isWaiting());
}

TEST_F(MascotItemTest, AStillFigureDoesNotReactToClicks) {
  engine.values().motion().setFrozen(true);
  MascotItem& item = show();
  const QImage before = drawn(item);
  item.tap();
  EXPECT_EQ(drawn(item), before);
  EXPECT_FALSE(item.isWaiting());
}

TEST_F(MascotItemTest, AStillFigureIsHeldInItsState) {
  engine.values().motion().setFrozen(true);
  MascotItem& item = show();
  const QImage awake = drawn(item);
  item.setFrozenState(static_cast<int>(MascotFrozenState::dozing));
  EXPECT_NE(drawn(item), awake);
}

TEST_F(MascotItemTest, TheFigureFillsItsSquare) {
  engine.values().motion().setFrozen(true);
  const QImage image = drawn(show());
  // The body reaches from 12 to 108 of 120 units, the item 14 further out.
  const QColor white(255, 255, 255);
  EXPECT_EQ(image.pixelColor(14 + 60, 14 + 95), white);
  EXPECT_EQ(image.pixelColor(2, 2).alpha(), 0);
}

TEST_F(MascotItemTest, AMoodThatIsNoneIsPassedOver) {
  MascotItem& item = show();
  item.setMood(2);
  item.setMood(17);
  item.setMood(-1);
  EXPECT_EQ(item.mood(), 2);
}

}  // namespace
}  // namespace embrix
