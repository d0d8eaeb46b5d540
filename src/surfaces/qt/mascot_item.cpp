#include "surfaces/qt/mascot_item.h"

#include <algorithm>

#include <QDateTime>
#include <QPainter>
#include <QQuickWindow>
#include <QRandomGenerator>

#include "surfaces/mascot_figure.h"
#include "surfaces/qt/picture_painter.h"
#include "surfaces/qt/surface_values.h"

namespace embrix {

namespace {

constexpr double kReferenceDate = 978307200;  // 2001-01-01 in seconds since 1970
constexpr double kSeeds = 10;

double now() {
  return static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000 - kReferenceDate;
}

std::optional<double> number(const QVariant& value) {
  bool isNumber = false;
  const double result = value.toDouble(&isNumber);
  return isNumber && !value.isNull() ? std::optional(result) : std::nullopt;
}

}  // namespace

MascotItem::MascotItem(QQuickItem* parent)
    : QQuickPaintedItem(parent),
      mascot_(Mascot::Mood::happy, QRandomGenerator::global()->bounded(kSeeds)) {
  setAntialiasing(true);
  next_.setSingleShot(true);
  next_.setTimerType(Qt::PreciseTimer);
  connect(&next_, &QTimer::timeout, this, &MascotItem::redraw);
  setFigure(figure_ - 1);
}

template <typename Value>
void MascotItem::take(Value& field, const Value& value) {
  if (field == value) return;
  field = value;
  redraw();
  emit changed();
}

void MascotItem::setMood(int mood) {
  if (mood == this->mood() || mood < 0 || mood >= static_cast<int>(kMascotMoods.size())) return;
  const auto newest = static_cast<Mascot::Mood>(mood);
  // A figure that was never seen has no mood to come from.
  if (isComponentComplete()) {
    mascot_.setMood(newest, now());
  } else {
    mascot_ = Mascot(newest, QRandomGenerator::global()->bounded(kSeeds));
  }
  redraw();
  emit changed();
}

void MascotItem::setFigure(double figure) {
  if (figure == figure_) return;
  figure_ = figure;
  const double edge = figure_ + 2 * inset();
  setSize({edge, edge});
  redraw();
  emit changed();
}

double MascotItem::inset() const {
  return figure_ * MascotFigure::kOverhang / MascotFigure::kUnits;
}

void MascotItem::setLine(double line) {
  take(line_, line);
}
void MascotItem::setAnimated(bool animated) {
  take(isAnimated_, animated);
}
void MascotItem::setRelief(const QVariant& relief) {
  take(relief_, relief);
}
void MascotItem::setSteaming(bool steaming) {
  take(isSteaming_, steaming);
}
void MascotItem::setGaze(const QVariant& gaze) {
  take(gaze_, gaze);
}
void MascotItem::setFrozenAt(const QVariant& frozenAt) {
  take(frozenAt_, frozenAt);
}
void MascotItem::setFrozenState(const QVariant& frozenState) {
  take(frozenState_, frozenState);
}

void MascotItem::tap() {
  if (isStill()) return;
  mascot_.tap(now());
  redraw();
}

void MascotItem::hover(bool isOver) {
  mascot_.setHovering(isOver, now());
  redraw();
}

bool MascotItem::isStill() const {
  SurfaceValues* values = SurfaceValues::of(this);
  return !isAnimated_ || number(frozenAt_) || values == nullptr || values->motion().isStill();
}

bool MascotItem::isSeen() const {
  return isVisible() && window() != nullptr && window()->isVisible() &&
         window()->visibility() != QWindow::Minimized;
}

Mascot::Surroundings MascotItem::surroundings() const {
  Mascot::Surroundings result{.idle = {}, .gaze = {}, .relief = {}, .steaming = isSteaming_};
  if (const SurfaceValues* values = SurfaceValues::of(this)) result.idle = values->idle();
  if (gaze_.canConvert<QPointF>() && !gaze_.isNull() && figure_ > 0) {
    const QPointF point = gaze_.toPointF();
    result.gaze = Point{point.x() - width() / 2, point.y() - height() / 2};
  }
  if (const auto date = number(relief_)) result.relief = *date - kReferenceDate;
  return result;
}

Picture MascotItem::picture() const {
  const double scale = figure_ / MascotFigure::kUnits;
  if (!isStill()) {
    const double time = now();
    const Mascot::Surroundings around = surroundings();
    return MascotFigure::draw(scale, line_, mascot_.features(time, around),
                              mascot_.pose(time, around));
  }
  std::optional<Mascot::FrozenState> state;
  if (const auto place = number(frozenState_)) state = static_cast<Mascot::FrozenState>(*place);
  Mascot::Pose pose = Mascot::Pose::of(mascot_.mood(), number(frozenAt_).value_or(0));
  if (isSteaming_ || state == Mascot::FrozenState::steam) pose.steam = 1;
  return MascotFigure::draw(scale, line_, Mascot::Features::frozen(mascot_.mood(), state), pose);
}

void MascotItem::paint(QPainter* painter) {
  painter->translate(inset(), inset());
  PicturePainter::paint(*painter, picture());
}

void MascotItem::redraw() {
  if (!isComponentComplete()) return;
  update();
  waitForNextFrame();
}

void MascotItem::waitForNextFrame() {
  if (isStill() || !isSeen()) {
    next_.stop();
    return;
  }
  const double scale = figure_ / MascotFigure::kUnits;
  const double milliseconds = mascot_.untilNextFrame(now(), surroundings(), scale) * 1000;
  // A whole number of them is not to become one less: slow frames fall on the same moment.
  constexpr double kRounding = 1e-3;
  next_.start(std::max(static_cast<int>(milliseconds + kRounding), 1));
}

void MascotItem::componentComplete() {
  QQuickPaintedItem::componentComplete();
  if (SurfaceValues* values = SurfaceValues::of(this)) {
    connect(&values->motion(), &MotionValues::stillChanged, this, &MascotItem::redraw);
  }
  redraw();
}

void MascotItem::itemChange(ItemChange change, const ItemChangeData& data) {
  QQuickPaintedItem::itemChange(change, data);
  if (change == ItemSceneChange) {
    disconnect(windowShown_);
    if (data.window != nullptr) {
      windowShown_ = connect(data.window, &QWindow::visibilityChanged, this, &MascotItem::redraw);
    }
  }
  if (change == ItemSceneChange || change == ItemVisibleHasChanged) redraw();
}

}  // namespace embrix
